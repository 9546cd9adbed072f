// Scripts that call whatever they find on the host's objects, with whatever they have.
// SPDX-License-Identifier: MIT

#include "dzscript.h"
#include "fuzz/fuzzed_host.h"
#include "fuzz/target.h"
#include "openhost/script_bounds.h"
#include "tests/host/foreign_fixture.h"

namespace {

/// Each call takes four numbers: the object, its member and two arguments. What calls give joins the objects.
const char* const code = R"(
var numbers = getArguments(), texts = ['', 'Doll', 'hand', 'XTranslate', '/no/such/file.duf', 'ä/b',
    'DzObjExporter', 'DzSceneAssetFilter', '{"a": {"b": 1}}', 'value/value', numbers.pop()];
var values = [undefined, null, true, -1, 0, 1, 2, 1e9, 4294967295, 1e308, -1e308, NaN, [], [[], null], {},
    {x: NaN, y: 1}, new Array(3000).join('A')].concat(texts);
var classes = ['DzNode', 'DzMorph', 'DzMorphDeltas', 'DzFileIOSettings', 'DzMorphLoader', 'DzTransferUtility',
    'DzBasicCamera', 'DzMorphLoaderBatch', 'DzFloatProperty', 'DzERCLink', 'DzWeightMap'];
var objects = [Scene, Scene.getNode(0), App, App.getContentMgr(), MainWindow, App.getRenderMgr().getRenderOptions(),
    App.getAssetIOMgr(), App.getExportMgr().getExporter(0), App.getImportMgr().getImporter(0)];
// These wait for a person, take minutes, or end the program.
var left = {aboutQt: 1, quit: 1, closeAllWindows: 1, sleep: 1, doRender: 1, exec: 1, execute: 1, call: 1,
    executeAction: 1, trigger: 1, close: 1};
function value(i) { return i % 3 == 0 ? objects[i % objects.length] : values[i % values.length]; }
function member(object, i) {
    var names = [];
    for (var name in object) if (!left[name.replace(/\(.*/, '')]) names.push(name);
    return names[i % names.length];
}
for (var i = 0; i + 3 < numbers.length; i += 4) {
    try {
        var given;
        if (numbers[i] > 250) {
            given = eval('new ' + classes[numbers[i + 1] % classes.length] + '()');
        } else {
            var object = objects[numbers[i] % objects.length], name = member(object, numbers[i + 1]);
            given = typeof object[name] == 'function' ? object[name](value(numbers[i + 2]), value(numbers[i + 3]))
                                                      : object[name] = value(numbers[i + 2]);
        }
        if (given && typeof given == 'object' && objects.length < 60) objects.push(given);
    } catch (error) {}
}
)";

std::vector<std::string> Seeds()
{
    std::vector<std::string> seeds;
    std::string walk;
    for (int i = 0; i < 240; i += 6) {
        const char byte = static_cast<char>(i);
        seeds.push_back({static_cast<char>(i % 9), byte, byte, static_cast<char>(255 - i)});
        walk += seeds.back();
    }
    seeds.push_back(walk);
    return seeds;
}

void Feed(std::string_view bytes)
{
    constexpr std::size_t mostCalls = 60;
    const std::filesystem::path library = fuzz::ScratchFolder() / "script";
    WriteBytes(library / (doll::path + 1), doll::File(doll::Figure(), "figure"));
    WriteBytes(library / "Doll.duf", doll::Scene(doll::Instance(), "", "character"));
    fuzz::FreshHost(library);
    fuzz::Open(library / "Doll.duf");
    QVariantList numbers;
    for (const char byte : bytes.substr(0, 4 * mostCalls))
        numbers.append(static_cast<unsigned char>(byte));
    numbers.append(QString::fromStdString((library / "Made.duf").string()));
    DzScript script;
    script.setCode(QString::fromUtf8(code));
    script.setTimeLimit(2000);
    const openhost::ScriptBounds bounds; // it makes files of all names
    script.execute(numbers);
    TestHost().purge();
}

const fuzz::Registration registration({"script", Seeds, Feed});

} // namespace
