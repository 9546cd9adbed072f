# gantrel_add_fuzz_targets(program): the program gets the targets that it can be fed with unguided, and what they stand on.
function(gantrel_add_fuzz_targets program)
    set(fuzz ${PROJECT_SOURCE_DIR}/fuzz)
    set(tests ${PROJECT_SOURCE_DIR}/tests)
    target_sources(${program} PRIVATE
        ${fuzz}/conversion.cpp
        ${fuzz}/detail.cpp
        ${fuzz}/dson_text.cpp
        ${fuzz}/figure.cpp
        ${fuzz}/fuzzed_host.cpp
        ${fuzz}/gzip.cpp
        ${fuzz}/job_table.cpp
        ${fuzz}/obj.cpp
        ${fuzz}/options.cpp
        ${fuzz}/scene.cpp
        ${fuzz}/script.cpp
        ${fuzz}/target.cpp
        ${fuzz}/uri.cpp
        ${PROJECT_SOURCE_DIR}/apps/cli/batch/job_table.cpp
        ${PROJECT_SOURCE_DIR}/apps/cli/batch/job_table_json.cpp
        ${PROJECT_SOURCE_DIR}/apps/cli/batch/job_table_text.cpp
        ${tests}/host/content_fixture.cpp
        ${tests}/host/foreign_fixture.cpp
        ${tests}/plugin/mini_library.cpp)
    target_include_directories(${program} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/apps/cli)
    target_link_libraries(${program} PRIVATE gantrel_options gantrel_engine host_rooms base geometry dson libcsv
        nlohmann_json::nlohmann_json GTest::gtest)
endfunction()
