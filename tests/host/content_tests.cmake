# Content room.
gantrel_add_tests(host_content_tests
    SOURCES
        content_fixture.cpp
        content_figure_test.cpp
        content_hostile_test.cpp
        content_paths_test.cpp
        content_preset_test.cpp
        content_text_test.cpp
        content_writer_test.cpp
        host_fixture.cpp
    LIBRARIES kst dzhost geometry nlohmann_json::nlohmann_json simdjson::simdjson)
