# Tools room.
gantrel_add_tests(host_tools_tests
    SOURCES
        host_fixture.cpp
        tools_fixture.cpp
        tools_morph_loader_settings_test.cpp
        tools_morph_loader_test.cpp
        tools_morph_making_test.cpp
        tools_obj_test.cpp
        tools_reversal_test.cpp
        tools_rig_test.cpp
        tools_subdivision_test.cpp
        tools_transfer_options_test.cpp
        tools_transfer_test.cpp
    LIBRARIES kst host_rooms geometry Qt5::Test)
