# Content room.
gantrel_add_tests(host_content_tests
    SOURCES
        content_attendant_test.cpp
        content_detail_test.cpp
        content_fixture.cpp
        content_figure_test.cpp
        content_foreign_clothes_test.cpp
        content_foreign_formula_test.cpp
        content_foreign_preset_test.cpp
        content_foreign_scene_test.cpp
        content_hostile_test.cpp
        content_paths_test.cpp
        content_pitfall_test.cpp
        content_preset_test.cpp
        content_save_failure_test.cpp
        content_save_format_test.cpp
        content_save_parts_test.cpp
        content_save_scene_test.cpp
        content_spelling_test.cpp
        content_text_test.cpp
        content_uv_test.cpp
        content_writer_test.cpp
        foreign_fixture.cpp
        host_fixture.cpp
        save_fixture.cpp
        scene_text.cpp
    LIBRARIES kst host_rooms geometry nlohmann_json::nlohmann_json simdjson::simdjson)
