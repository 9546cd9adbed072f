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
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        # What the sanitizers add makes the compiler warn about the standard library's own regular expressions.
        add_compile_options(-Wno-maybe-uninitialized)
    endif()
endif()
if(GANTREL_SANITIZE STREQUAL thread)
    # Loops of the packaged oneTBB, which is not instrumented, would look like races.
    include_directories(BEFORE ${CMAKE_CURRENT_LIST_DIR}/watched_threads)
endif()

# gantrel_precompile(target [FROM OTHER]): reads once what most sources of the target begin with; of targets with the
# same options one can lend its result to others.
option(GANTREL_PRECOMPILE "Read the headers that most sources have in common once for each target" ${GANTREL_STRICT})
function(gantrel_precompile target)
    cmake_parse_arguments(ARG "" "FROM" "" ${ARGN})
    if(NOT GANTREL_PRECOMPILE)
        return()
    endif()
    if(ARG_FROM)
        target_precompile_headers(${target} REUSE_FROM ${ARG_FROM})
    else()
        target_precompile_headers(${target} PRIVATE <QHash> <QList> <QObject> <QPointer> <QString> <QStringList> <QVariant>
            <QWidget> <algorithm> <functional> <map> <memory> <string> <vector>)
    endif()
endfunction()
