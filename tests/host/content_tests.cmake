# Content room.
gantrel_add_tests(host_content_tests
    SOURCES
        content_add_on_test.cpp
        content_alias_test.cpp
        content_alias_value_test.cpp
        content_attendant_test.cpp
        content_crease_test.cpp
        content_detail_test.cpp
        content_dform_test.cpp
        content_dial_index_test.cpp
        content_effects_test.cpp
        content_fixture.cpp
        content_figure_test.cpp
        content_foreign_clothes_test.cpp
        content_foreign_formula_test.cpp
        content_foreign_preset_test.cpp
        content_foreign_scene_test.cpp
        content_hostile_test.cpp
        content_index_test.cpp
        content_influence_test.cpp
        content_keep_definitions_test.cpp
        content_keep_test.cpp
        content_keep_odd_test.cpp
        content_odd_mesh_test.cpp
        content_odd_parts_test.cpp
        content_odd_values_test.cpp
        content_origin_test.cpp
        content_paths_test.cpp
        content_pitfall_test.cpp
        content_names_test.cpp
        content_preset_test.cpp
        content_save_effects_test.cpp
        content_save_failure_test.cpp
        content_save_faults_test.cpp
        content_save_format_test.cpp
        content_save_joints_test.cpp
        content_save_parts_test.cpp
        content_save_scene_test.cpp
        content_save_values_test.cpp
        content_skin_test.cpp
        content_spelling_test.cpp
        content_stray_bones_test.cpp
        content_text_test.cpp
        content_unshown_test.cpp
        content_uv_test.cpp
        content_writer_test.cpp
        foreign_fixture.cpp
        host_fixture.cpp
        hostile_disk.cpp
        save_fixture.cpp
        scene_text.cpp
        ${PROJECT_SOURCE_DIR}/tests/base/traced_run.cpp
    LIBRARIES kst host_rooms geometry nlohmann_json::nlohmann_json simdjson::simdjson SQLite::SQLite3)
# Its allocator counts.
gantrel_add_tests(host_cost_tests
    SOURCES allocations.cpp content_cost_test.cpp content_fixture.cpp host_fixture.cpp
    LIBRARIES kst host_rooms geometry nlohmann_json::nlohmann_json)
