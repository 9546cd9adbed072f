# Script and window rooms.
gantrel_add_tests(host_script_tests
    SOURCES headless_dialog_test.cpp host_fixture.cpp script_test.cpp
    LIBRARIES host_rooms)
