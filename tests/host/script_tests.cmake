# Script and window rooms.
gantrel_add_tests(host_script_tests
    SOURCES headless_dialog_test.cpp host_fixture.cpp limits_test.cpp script_signal_test.cpp script_survival_test.cpp script_test.cpp
    LIBRARIES host_rooms)
target_compile_definitions(host_script_tests PRIVATE GANTREL_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
