# Sources of this room, relative to host/.
set(HOST_FIGURE_SOURCES
    figure/fitting.cpp
    figure/mesh.cpp
    figure/modifiers.cpp
    figure/morph_deltas.cpp
    figure/object.cpp
    figure/pipeline.cpp
    figure/shape.cpp
    figure/skin.cpp
    figure/subdivision_cache.cpp
)
