# gantrel_add_library(name SOURCES...): a library that others can use too, with its headers in include/. Shared, so
# that there is one copy of it in a process however many of its parts use it.
function(gantrel_add_library name)
    add_library(${name} SHARED ${ARGN})
    target_compile_features(${name} PUBLIC cxx_std_17)
    target_include_directories(${name} PUBLIC
        $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:include>)
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:gantrel_options>)
    set_target_properties(${name} PROPERTIES
        OUTPUT_NAME gantrel-${name} VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()
