# Scene and figure rooms.
gantrel_add_tests(host_scene_tests
    SOURCES
        diagnostics_test.cpp
        host_fixture.cpp
        figure_fitting_test.cpp
        figure_following_test.cpp
        figure_graft_test.cpp
        figure_memory_test.cpp
        figure_pipeline_test.cpp
        figure_weight_map_test.cpp
        log_test.cpp
        scene_camera_test.cpp
        scene_chain_test.cpp
        scene_events_test.cpp
        scene_node_test.cpp
        scene_property_test.cpp
        scene_settings_faults_test.cpp
        scene_surface_colors_test.cpp
        scene_settings_test.cpp
        scene_spline_test.cpp
        ${PROJECT_SOURCE_DIR}/tests/base/traced_run.cpp
    LIBRARIES host_rooms geometry Qt5::Test)
gantrel_add_tests(host_undo_tests
    SOURCES host_fixture.cpp undo_edits_test.cpp undo_scene.cpp undo_sequence_test.cpp undo_test.cpp
    LIBRARIES host_rooms rapidcheck_gtest)
