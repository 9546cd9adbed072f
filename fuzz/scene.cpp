// Scenes and presets around a whole figure, and what is saved of them.
// SPDX-License-Identifier: MIT

#include "fuzz/fuzzed_host.h"
#include "fuzz/target.h"
#include "tests/host/foreign_fixture.h"

#include <dzerror.h>

namespace {

/// With the figure and morphs that scenes name.
const std::filesystem::path& Library()
{
    static const std::filesystem::path library = [] {
        const std::filesystem::path folder = fuzz::ScratchFolder() / "library";
        WriteBytes(folder / (doll::path + 1), doll::File(doll::Figure(), "figure"));
        const std::filesystem::path shapes = folder / doll::shapes;
        WriteBytes(shapes / "Up.dsf", doll::ModifierFile(doll::Morph("Up", 3, 1.5)));
        WriteBytes(shapes / "Led.dsf",
                   doll::ModifierFile(doll::Control(
                       "Led", doll::Driven("hand:" + std::string(doll::path) + "#hand?rotation/x",
                                           "Doll:#Up?value", "30"))));
        return folder;
    }();
    return library;
}

std::vector<std::string> Seeds()
{
    const std::string dial =
        R"({"id": "Up-1", "url": ")" + std::string("/") + doll::shapes +
        R"(Up.dsf#Up", "parent": "#Doll", "channel": {"id": "value", "current_value": 0.5}})";
    const std::string smoothing = R"({"id": "Smooth", "name": "Smooth", "parent": "#Doll-1", "extra":
        [{"type": "studio/modifier/smoothing"}]})";
    return {
        doll::Scene(doll::Instance(), R"(, "modifiers": [)" + dial + "]"),
        doll::Scene(doll::Instance() + "," +
                    doll::Instance("-2", R"(, "parent": "#Doll", "conform_target": "#Doll",
                            "translation": [{"id": "x", "current_value": 5}])")),
        doll::Scene("", R"("animations": [{"url": "name://@selection/hand:?rotation/x/value",
                "keys": [[0, 30], [1, 40]]}])",
                    "preset_pose"),
        doll::File(
            R"("scene": {"animations": [{"url": "name://@selection#Up:?value/value", "keys": [[0, 1]]}]})",
            "preset_shape"),
        doll::File(R"("modifier_library": [)" + smoothing + R"(], "scene": {"nodes": [)" + doll::Instance() +
                       R"(], "modifiers": [{"id": "Smooth-1", "url": "#Smooth", "parent": "#Doll-1"}]})",
                   "scene"),
        doll::File(R"("node_library": [{"id": "Cube", "type": "node", "label": "Cube"}], "scene": {"nodes":
                [{"id": "Cube-1", "url": "#Cube", "parent": "#Cube-1"}]})",
                   "scene")};
}

void Feed(std::string_view bytes)
{
    fuzz::FreshHost(Library());
    WriteBytes(Library() / "Input.duf", std::string(bytes));
    const bool isOpen = fuzz::Open(Library() / "Input.duf");
    dzScene->update();
    dzScene->getBoundingBox();
    if (!isOpen || dzScene->getNumNodes() == 0)
        return;
    const std::filesystem::path saved = Library() / "Saved.duf";
    const QString name = QString::fromStdString(saved.string());
    if (dzScene->saveScene(name) == DZ_NO_ERROR)
        fuzz::Demand(dzScene->loadScene(name, DzScene::OpenNew) == DZ_NO_ERROR,
                     "a saved scene can be opened");
}

const fuzz::Registration registration({"scene", Seeds, Feed});

} // namespace
