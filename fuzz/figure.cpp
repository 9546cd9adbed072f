// A figure's own file, and a morph's, loaded into a scene and put into shape.
// SPDX-License-Identifier: MIT

#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "fuzz/fuzzed_host.h"
#include "fuzz/target.h"
#include "tests/host/foreign_fixture.h"

namespace {

/// Stands between the file of the figure and that of its morph.
constexpr char divider = '\x1e';

std::vector<std::string> Seeds()
{
    const std::string figure = doll::File(doll::Figure(), "figure");
    const auto pair = [&](const std::string& modifier) {
        return figure + divider + doll::ModifierFile(modifier);
    };
    return {pair(doll::Morph("Up", 3, 1.5)),
            pair(doll::Control("Up",
                               doll::Driven("hand:" + std::string(doll::path) + "#hand?center_point/x",
                                            "Doll:" + std::string(doll::path) + "#Doll?scale/general", "2"))),
            pair(doll::Control("Up",
                               R"(, "formulas": [{"output": "Doll:#Up?value", "stage": "mult", "operations": [
                {"op": "push", "url": "Doll:#Up?value"}, {"op": "push", "val": [0, 0, 0, 0, 0]},
                {"op": "push", "val": [1, 1, 0, 0, 0]}, {"op": "push", "val": 2}, {"op": "spline_tcb"}]}])")),
            pair(doll::Morph("Up", 3, 1.5)) + divider};
}

/// Everything that moves the figure, a little.
void Turn(DzFigure& figure)
{
    const QObjectList bones = figure.getAllBones();
    for (QObject* const bone : bones)
        if (auto* const angle = qobject_cast<DzFloatProperty*>(
                static_cast<DzNode*>(bone)->findProperty(QStringLiteral("XRotate"))))
            angle->setValue(10.0f);
    if (DzMorph* const morph = FindMorph(figure, "Up"))
        morph->getValueControl()->setValue(0.5f);
    if (figure.getObject())
        figure.getObject()->forceCacheUpdate(&figure, true);
}

void Feed(std::string_view bytes)
{
    const std::filesystem::path library = fuzz::ScratchFolder() / "figure";
    const std::size_t end = std::min(bytes.find(divider), bytes.size());
    WriteBytes(library / (doll::path + 1), std::string(bytes.substr(0, end)));
    WriteBytes(library / doll::shapes / "Up.dsf", std::string(bytes.substr(std::min(end + 1, bytes.size()))));
    WriteBytes(library / "Doll.duf", doll::Scene(doll::Instance(), "", "character"));
    fuzz::FreshHost(library);
    fuzz::Open(library / "Doll.duf");
    const QObjectList nodes = dzScene->getNodeList();
    for (QObject* const node : nodes)
        if (auto* const figure = qobject_cast<DzFigure*>(node))
            Turn(*figure);
    dzScene->getBoundingBox();
}

const fuzz::Registration registration({"figure", Seeds, Feed});

} // namespace
