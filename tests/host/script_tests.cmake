# Script room.
gantrel_add_tests(host_script_tests
    SOURCES host_fixture.cpp script_test.cpp
    LIBRARIES dzhost)
