// A small figure whose files are written by hand, as other programs write theirs.
// SPDX-License-Identifier: MIT

#include "tests/host/foreign_fixture.h"

#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"

#include <fmt/format.h>

namespace fs = std::filesystem;

namespace doll {

std::string File(const std::string& members, const std::string& type)
{
    return R"({"file_version": "0.6.1.0", "asset_info": {"id": "/x.duf", "type": ")" + type +
           R"(", "contributor": {"author": "Nord"}, "revision": "1.0"})" + (members.empty() ? "" : ", ") +
           members + "}";
}

std::string ModifierFile(const std::string& modifier)
{
    return File("\"modifier_library\": [" + modifier + "]", "modifier");
}

std::string Control(const std::string& name, const std::string& more, const std::string& channel)
{
    return R"({"id": ")" + name + R"(", "name": ")" + name +
           R"(", "parent": "/data/Nord/Doll/Doll.dsf#Doll",)" + R"( "channel": )" + channel + more + "}";
}

std::string Morph(const std::string& name, int vertex, double y, const std::string& more)
{
    return Control(name, R"(, "morph": {"vertex_count": 8, "deltas": {"count": 1, "values": [[)" +
                             std::to_string(vertex) + fmt::format(", 0, {}, 0]]}}}}", y) + more);
}

std::string Driven(const std::string& output, const std::string& input, const std::string& factor)
{
    return R"(, "formulas": [{"output": ")" + output + R"(", "operations": [{"op": "push", "url": ")" +
           input + R"("}, {"op": "push", "val": )" + factor + R"(}, {"op": "mult"}]}])";
}

std::string Figure()
{
    return R"("geometry_library": [{"id": "Doll-1", "name": "Doll", "type": "subdivision_surface",
        "vertices": {"count": 8, "values": [[0,0,0],[5,0,0],[0,10,0],[5,10,0],[0,20,0],[5,20,0],[0,30,0],[5,30,0]]},
        "polygon_groups": {"count": 2, "values": ["hip", "hand"]},
        "polygon_material_groups": {"count": 1, "values": ["Skin"]},
        "polylist": {"count": 3, "values": [[0,0,0,1,3,2],[0,0,2,3,5,4],[1,0,4,5,7,6]]},
        "graft": {}, "rigidity": {},
        "extra": {"type": "studio_geometry_channels", "channels":
            [{"channel": {"id": "SubDIALevel", "type": "int", "value": 0}}]}}],
    "node_library": [
        {"id": "Doll", "name": "Doll", "type": "figure", "label": "Doll", "rotation_order": "XYZ",
         "inherits_scale": true},
        {"id": "hip", "name": "hip", "type": "bone", "label": "Hip", "parent": "#Doll", "rotation_order": "XYZ",
         "center_point": [{"id": "x", "value": 0}, {"id": "y", "value": 0}, {"id": "z", "value": 0}]},
        {"id": "hand", "name": "hand", "type": "bone", "label": "Hand", "parent": "#hip", "rotation_order": "XYZ",
         "center_point": [{"id": "x", "value": 0}, {"id": "y", "value": 20}, {"id": "z", "value": 0}]}],
    "modifier_library": [{"id": "Skin", "name": "Skin", "parent": "#Doll-1",
        "skin": {"node": "#Doll", "geometry": "#Doll-1", "vertex_count": 8, "joints": [
            {"id": "hip", "node": "#hip", "node_weights": {"count": 4, "values": [[0,1],[1,1],[2,1],[3,1]]}},
            {"id": "hand", "node": "#hand", "node_weights": {"count": 4, "values": [[4,1],[5,1],[6,1],[7,1]]}}]},
        "extra": [{"type": "skin_settings", "general_map_mode": "DualQuat"}]}])";
}

std::string Scene(const std::string& nodes, const std::string& more, const std::string& type)
{
    return File("\"scene\": {\"nodes\": [" + nodes + "]" + more + "}", type);
}

std::string Instance(const std::string& suffix, const std::string& more, const std::string& hand,
                     const std::string& file)
{
    const std::string url = "\"url\": \"" + file + "#";
    return "{\"id\": \"Doll" + suffix + "\", " + url + "Doll\", \"geometries\": [{\"id\": \"Doll-1" + suffix +
           "\", " + url + "Doll-1\"}]" + more + "}, {\"id\": \"hip" + suffix + "\", " + url +
           "hip\", \"parent\": \"#Doll" + suffix + "\"}, {\"id\": \"hand" + suffix + "\", " + url +
           "hand\", \"parent\": \"#hip" + suffix + "\"" + hand + "}";
}

} // namespace doll

void ForeignTest::SetUp()
{
    LibraryTest::SetUp();
    write("data/Nord/Doll/Doll.dsf", doll::File(doll::Figure(), "figure"));
}

fs::path ForeignTest::write(const std::string& relative, const std::string& text) const
{
    WriteBytes(_library / relative, text);
    return _library / relative;
}

void ForeignTest::writeShape(const std::string& name, const std::string& modifier) const
{
    write(doll::shapes + name + ".dsf", doll::ModifierFile(modifier));
}

bool ForeignTest::load(const std::string& relative, const std::string& text)
{
    return open(write(relative, text));
}

DzFigure* ForeignTest::openDoll()
{
    return load("People/Doll.duf", doll::Scene(doll::Instance(), "", "character"))
               ? qobject_cast<DzFigure*>(dzScene->getPrimarySelection())
               : nullptr;
}

bool ForeignTest::logged(const std::string& line) const
{
    return log().contains(QString::fromStdString(line));
}

int ForeignTest::timesLogged(const std::string& part) const
{
    return log().count(QString::fromStdString(part));
}

DzFigure* ForeignTest::labelled(const char* label)
{
    return qobject_cast<DzFigure*>(dzScene->findNodeByLabel(QString::fromUtf8(label)));
}

DzNode* BoneOf(const DzNode& figure, const char* name)
{
    return figure.findNodeChild(QString::fromUtf8(name), true);
}

DzNumericProperty* DialIn(const DzNode& figure, const char* name)
{
    if (DzMorph* const morph = FindMorph(figure, name))
        return morph->getValueControl();
    if (auto* const own = qobject_cast<DzNumericProperty*>(figure.findProperty(QString::fromUtf8(name))))
        return own;
    for (QObject* const child : figure.getNodeChildren(true))
        if (auto* const property = qobject_cast<DzNumericProperty*>(
                qobject_cast<DzNode*>(child)->findProperty(QString::fromUtf8(name))))
            return property;
    return nullptr;
}

double ValueIn(const DzNode& figure, const char* dial)
{
    const DzNumericProperty* const property = DialIn(figure, dial);
    return property ? property->getDoubleValue() : -1000.0;
}
