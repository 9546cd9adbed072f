# Sources of this room, relative to host/, with the headers that moc is to read.
set(HOST_TOOLS_SOURCES
)
