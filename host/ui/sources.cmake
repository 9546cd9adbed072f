# Sources of this room, relative to host/.
set(HOST_UI_SOURCES
    ui/actions.cpp
    ui/app.cpp
    ui/openhost.cpp
    ui/plugins.cpp
    ui/progress.cpp
)
