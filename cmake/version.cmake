# The one place of the version: programs, packages, pages of the manual and the plug-in take it from here. CHANGELOG.md
# begins with what it brings.
set(gantrel_version 1.0.5)

# The day that CHANGELOG.md names for it; a release of the plug-in's sources has no such file and no use for the day.
set(changes ${CMAKE_CURRENT_LIST_DIR}/../CHANGELOG.md)
if(EXISTS ${changes})
    string(REPLACE "." "\\." pattern ${gantrel_version})
    file(STRINGS ${changes} heading REGEX "^## ${pattern} [(][0-9]+-[0-9]+-[0-9]+[)]$")
    if(NOT heading MATCHES "[(](.*)[)]")
        message(FATAL_ERROR "CHANGELOG.md has no line \"## ${gantrel_version} (YEAR-MONTH-DAY)\".")
    endif()
    set(gantrel_version_date ${CMAKE_MATCH_1})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${changes})
endif()
