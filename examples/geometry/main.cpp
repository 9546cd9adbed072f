// Carries a morph from one mesh to another: carry_morph NEUTRAL.obj MORPHED.obj TARGET.obj OUT.obj
// SPDX-License-Identifier: MIT

#include <base/errors.h>
#include <geometry/deltas.h>
#include <geometry/morph_transfer.h>
#include <geometry/obj.h>

#include <iostream>

int main(int argc, char** argv)
try {
    if (argc != 5)
        throw base::Error("usage: carry_morph NEUTRAL.obj MORPHED.obj TARGET.obj OUT.obj");
    const geometry::PolygonMesh source = geometry::ReadObj(argv[1]).mesh,
                                morphed = geometry::ReadObj(argv[2]).mesh;
    geometry::PolygonMesh target = geometry::ReadObj(argv[3]).mesh;

    const auto deltas = geometry::MakeDeltas(source.positions, morphed.positions, 0.001f); // cm
    const auto map = geometry::MatchSurfaces(source.view(), target.view());
    const auto moves = map.transfer(geometry::ToDense(deltas, source.vertexCount()));
    for (std::size_t v = 0; v < moves.size(); ++v)
        target.positions[v] += moves[v];

    geometry::ObjPart part;
    part.mesh = target.view();
    geometry::WriteObj(argv[4], {&part, 1});
    std::cout << deltas.size() << " vertices move by up to " << geometry::LargestLength(deltas) << " cm\n";
} catch (const base::Error& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
