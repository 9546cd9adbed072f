# What every target of the project is built with, here and where the plug-in is built by itself.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# Assertions guard against programming errors in every build, so no configuration defines NDEBUG.
foreach(configuration RELEASE RELWITHDEBINFO MINSIZEREL)
    string(REGEX REPLACE "[-/]DNDEBUG" "" CMAKE_CXX_FLAGS_${configuration} "${CMAKE_CXX_FLAGS_${configuration}}")
endforeach()

option(GANTREL_WARNINGS_AS_ERRORS "Fail on compiler warnings" ${GANTREL_STRICT})
option(GANTREL_STRICT_TEXT "Refuse plain C texts where the toolkit wants its own strings" ${GANTREL_STRICT})

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(gantrel_options INTERFACE)
if(APPLE)
    # The standard library of the closed host.
    target_compile_options(gantrel_options INTERFACE -stdlib=libc++)
    target_link_options(gantrel_options INTERFACE -stdlib=libc++)
endif()
if(NOT MSVC)
    target_compile_options(gantrel_options INTERFACE -Wall -Wextra -Wshadow -Wno-missing-field-initializers)
endif()
if(GANTREL_WARNINGS_AS_ERRORS)
    target_compile_options(gantrel_options INTERFACE $<IF:$<CXX_COMPILER_ID:MSVC>,/WX,-Werror>)
endif()
if(GANTREL_SANITIZE)
    add_compile_options(-fsanitize=${GANTREL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=${GANTREL_SANITIZE})
endif()
