# Libraries that others can use too: cmake --install puts them, their headers and what find_package reads into place.
# The component "libraries" is what programs load, "development" what they are built with.
include(CMakePackageConfigHelpers)

set(gantrel_package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/gantrel)
# gantrel_add_library(name SOURCES...): a library with its public headers in include/. Shared, so that there is one copy
# of it in a process however many of its parts use it.
function(gantrel_add_library name)
    add_library(${name} SHARED ${ARGN})
    add_library(gantrel::${name} ALIAS ${name})
    target_compile_features(${name} PUBLIC cxx_std_17)
    target_include_directories(${name} PUBLIC
        $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/gantrel>)
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:gantrel_options>)
    set_target_properties(${name} PROPERTIES
        OUTPUT_NAME gantrel-${name} VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
        # The libraries lie side by side, wherever their folder is moved.
        INSTALL_RPATH ${gantrel_own_folder})
    install(TARGETS ${name} EXPORT gantrel
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT libraries NAMELINK_COMPONENT development)
    install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/gantrel COMPONENT development
        FILES_MATCHING PATTERN *.h)
    add_dependencies(installed ${name})
endfunction()

install(EXPORT gantrel NAMESPACE gantrel:: FILE gantrel-targets.cmake DESTINATION ${gantrel_package_folder}
    COMPONENT development)
configure_package_config_file(cmake/gantrel-config.cmake.in gantrel-config.cmake
    INSTALL_DESTINATION ${gantrel_package_folder} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/gantrel-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/gantrel-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/gantrel-config-version.cmake
    DESTINATION ${gantrel_package_folder} COMPONENT development)
