// Wavefront OBJ files.
// SPDX-License-Identifier: MIT

#include "geometry/obj.h"

#include "base/errors.h"
#include "fuzz/target.h"

namespace {

std::vector<std::string> Seeds()
{
    return {"mtllib a.mtl\no Cube\nv 0 0 0\nv 1 0 0 1 1 1\nv 1 1 0\nv 0 1 0\nvt 0 0\nvt 1,5 0\nvn 0 0 1\n"
            "g hip\nusemtl Skin\nf 1/1/1 2/2/1 3/1/1 4/2/1\ns 1\nf -1 -2 -3\n",
            "# by hand\r\nv 1e3 -.5 +2\r\nv 1 2 3 \\\r\n4\r\nv 9 8 7\r\nl 1 2 3\r\nf 1//1 2//2 3//3\r\n",
            "v nan inf 1e999\nf 1 1 1\nf 1 2\ng\nusemtl\n"};
}

void Feed(std::string_view bytes)
{
    geometry::ObjContent content;
    try {
        content = geometry::ParseObj(bytes, {}, "input");
    } catch (const base::Error&) {
        return;
    }
    geometry::ObjPart part;
    part.mesh = content.mesh.view();
    part.texCoords = &content.texCoords;
    part.lines = content.lines;
    const std::string text = geometry::FormatObj({&part, 1});
    const geometry::ObjContent again = geometry::ParseObj(text, {}, "written");
    fuzz::Demand(again.mesh.vertexCount() == content.mesh.vertexCount(), "written vertices are read again");
    fuzz::Demand(again.mesh.faceCount() == content.mesh.faceCount(), "written faces are read again");
    fuzz::Demand(again.lines == content.lines, "written lines are read again");
}

const fuzz::Registration registration({"obj", Seeds, Feed});

} // namespace
