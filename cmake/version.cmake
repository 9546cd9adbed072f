# The one place of the version: programs, packages, pages of the manual and the plug-in take it from here. CHANGELOG.md
# begins with what it brings.
set(gantrel_version 1.0.5)
