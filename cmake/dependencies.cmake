# Libraries from Debian packages; scripts/setup installs them.
find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Script Test)
set(QT_VERSION_MAJOR 5)
find_package(Eigen3 3.3 REQUIRED NO_MODULE)
find_package(TBB REQUIRED)
find_package(embree 3 REQUIRED)
find_package(fmt 8 REQUIRED)
find_package(simdjson REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(CLI11 REQUIRED)
find_package(ZLIB REQUIRED)
find_package(SQLite3 REQUIRED)
find_package(PNG REQUIRED)
find_package(GTest REQUIRED)
find_package(benchmark REQUIRED)
find_package(rapidcheck REQUIRED)

# These packages ship no CMake file.
find_path(OPENSUBDIV_INCLUDE_DIR opensubdiv/far/topologyRefiner.h REQUIRED)
find_library(OPENSUBDIV_CPU_LIBRARY osdCPU REQUIRED)
add_library(OpenSubdiv::osdCPU UNKNOWN IMPORTED)
set_target_properties(OpenSubdiv::osdCPU PROPERTIES
    IMPORTED_LOCATION ${OPENSUBDIV_CPU_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${OPENSUBDIV_INCLUDE_DIR})

find_path(LIBDEFLATE_INCLUDE_DIR libdeflate.h REQUIRED)
find_library(LIBDEFLATE_LIBRARY deflate REQUIRED)
add_library(libdeflate UNKNOWN IMPORTED)
set_target_properties(libdeflate PROPERTIES
    IMPORTED_LOCATION ${LIBDEFLATE_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${LIBDEFLATE_INCLUDE_DIR})

find_path(XXHASH_INCLUDE_DIR xxhash.h REQUIRED)
find_library(XXHASH_LIBRARY xxhash REQUIRED)
add_library(xxhash UNKNOWN IMPORTED)
set_target_properties(xxhash PROPERTIES
    IMPORTED_LOCATION ${XXHASH_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${XXHASH_INCLUDE_DIR})

find_path(CSV_INCLUDE_DIR csv.h REQUIRED)
find_library(CSV_LIBRARY csv REQUIRED)
add_library(libcsv UNKNOWN IMPORTED)
set_target_properties(libcsv PROPERTIES
    IMPORTED_LOCATION ${CSV_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${CSV_INCLUDE_DIR})

# Eigen offers some solvers under the GPL; only the MPL part may be used.
add_compile_definitions(EIGEN_MPL2_ONLY)
