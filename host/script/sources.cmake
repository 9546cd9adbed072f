# Sources of this room, relative to host/.
set(HOST_SCRIPT_SOURCES
    include/dzscript.h
    script/dzscript.cpp
    script/message_box.cpp
    script/message_box.h
    script/script_classes.cpp
    script/script_classes.h
    script/script_functions.cpp
    script/script_functions.h
    script/script_output.cpp
    script/script_output.h
    script/script_session.cpp
    script/script_session.h
)
