# The same steps in Blender: blender -b --factory-startup -P in_blender.py -- SOURCE MORPHED TARGET OUT LEVEL
# SPDX-License-Identifier: MIT

import json
import sys
import time

import bmesh
import bpy

source_file, morphed_file, target_file, out, level = sys.argv[sys.argv.index("--") + 1 :]
seconds = {}


def measure(step, work):
    begin = time.monotonic()
    result = work()
    seconds[step] = time.monotonic() - begin
    return result


def load(file):
    bpy.ops.wm.obj_import(filepath=file)
    return bpy.context.selected_objects[0]


def save(what):
    bpy.ops.object.select_all(action="DESELECT")
    what.select_set(True)
    bpy.ops.wm.obj_export(filepath=out, export_selected_objects=True, export_uv=False, export_normals=False,
                          export_materials=False)  # fmt: skip


def evaluated():
    graph = bpy.context.evaluated_depsgraph_get()
    graph.update()
    return len(target.evaluated_get(graph).to_mesh().vertices)


def bind():
    modifier = target.modifiers.new("follow", "SURFACE_DEFORM")
    modifier.target = source
    bpy.context.view_layer.objects.active = target
    bpy.ops.object.surfacedeform_bind(modifier="follow")
    if not modifier.is_bound:
        sys.exit("Surface Deform does not bind these meshes")


def triangulate(what):
    """Surface Deform refuses concave faces, which real meshes have; not measured."""
    mesh = bmesh.new()
    mesh.from_mesh(what.data)
    bmesh.ops.triangulate(mesh, faces=mesh.faces)
    mesh.to_mesh(what.data)
    mesh.free()


def deform():
    places = [0.0] * (3 * len(morphed.data.vertices))
    morphed.data.vertices.foreach_get("co", places)
    source.data.vertices.foreach_set("co", places)
    source.data.update()
    return evaluated()


def subdivide():
    modifier = target.modifiers.new("fine", "SUBSURF")
    modifier.levels = modifier.render_levels = int(level)
    return evaluated()


bpy.ops.wm.read_factory_settings(use_empty=True)
source, morphed, target = measure("read", lambda: [load(file) for file in (source_file, morphed_file, target_file)])
triangulate(source)
measure("bind", bind)
measure("evaluate", deform)
measure("write", lambda: save(target))
measure("subdivide", subdivide)
measure("write subdivided", lambda: save(target))
bpy.ops.wm.read_factory_settings(use_empty=True)
measure("read subdivided", lambda: load(out))
print("seconds", json.dumps(seconds))
