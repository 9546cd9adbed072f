// The steps of a transfer as Blender is asked for them, timed one by one: blender_counterpart
// SOURCE_NEUTRAL.obj SOURCE_MORPHED.obj TARGET_NEUTRAL.obj OUT.obj LEVEL
// SPDX-License-Identifier: MIT

#include "geometry/morph_transfer.h"
#include "geometry/obj.h"
#include "geometry/subdivision.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>

#include <nlohmann/json.hpp>

namespace {

using namespace geometry;

class Stopwatch {
public:
    template <class Work>
    auto measure(const char* step, const Work& work)
    {
        const auto begin = std::chrono::steady_clock::now();
        auto result = work();
        _seconds[step] = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        return result;
    }
    const nlohmann::json& seconds() const { return _seconds; }

private:
    nlohmann::json _seconds;
};

void Run(char** files, int level)
{
    Stopwatch watch;
    struct Meshes {
        ObjContent source, morphed, target;
    };
    Meshes meshes = watch.measure("read", [&] {
        return Meshes{ReadObj(files[0]), ReadObj(files[1]), ReadObj(files[2])};
    });
    const SurfaceMap map = watch.measure(
        "bind", [&] { return MatchSurfaces(meshes.source.mesh.view(), meshes.target.mesh.view()); });
    watch.measure("evaluate", [&] {
        std::vector<Vec3f> deltas = meshes.morphed.mesh.positions;
        for (std::size_t v = 0; v < deltas.size(); ++v)
            deltas[v] -= meshes.source.mesh.positions[v];
        deltas = map.transfer(deltas);
        for (std::size_t v = 0; v < deltas.size(); ++v)
            meshes.target.mesh.positions[v] += deltas[v];
        return true;
    });
    const auto write = [&](const PolygonMesh& mesh) {
        ObjPart part;
        part.mesh = mesh.view();
        WriteObj(files[3], {&part, 1});
        return true;
    };
    watch.measure("write", [&] { return write(meshes.target.mesh); });
    const PolygonMesh fine = watch.measure("subdivide", [&] {
        const Subdivision subdivision(meshes.target.mesh.topology, level);
        return PolygonMesh{subdivision.topology(level),
                           subdivision.refine(meshes.target.mesh.positions, 0, level)};
    });
    watch.measure("write subdivided", [&] { return write(fine); });
    watch.measure("read subdivided", [&] { return ReadObj(files[3]); });
    std::cout << watch.seconds() << '\n';
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 6) {
        std::fputs("usage: blender_counterpart SOURCE_NEUTRAL.obj SOURCE_MORPHED.obj TARGET_NEUTRAL.obj "
                   "OUT.obj LEVEL\n",
                   stderr);
        return 2;
    }
    try {
        Run(arguments + 1, std::atoi(arguments[5]));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "blender_counterpart: %s\n", error.what());
        return 1;
    }
}
