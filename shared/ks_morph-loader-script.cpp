// The host's Morph Loader Pro, run by a fixed script.
// SPDX-License-Identifier: MIT

#include "ks_morph-loader-script.h"

#include "ks_exception.h"
#include "ks_morph-loader.h"
#include "ks_string.h"

#include <QString>
#include <QVariant>

#include <dzscript.h>

#include <fmt/format.h>

namespace kst {

namespace {

const char* const scriptBegin = R"script(
function Kestrom_RunMorphLoaderPro(sInputFilename, sMorphName, sJsonObjImportSettings, fSubd, iSubdBuiltResolution,
                                   sPropertyGroupPath, fReverseDeformations, sAttenuateMapPath, tAttenuate)
{
    try
    {
        var oNode = Scene.getPrimarySelection();

        var oSettings = new DzFileIOSettings();
        if (!oSettings.fromString(sJsonObjImportSettings))
            throw ")script";

const char* const scriptSettings = R"script(";
        // The settings text brings the axes and the scale:
        // oSettings.setFloatValue("Scale", 50);
        // oSettings.setStringValue("LatAxis", "X");
        // oSettings.setStringValue("VertAxis", "Y");
        // oSettings.setStringValue("DepthAxis", "Z");
        // oSettings.setBoolValue("InvertLat", false);
        // oSettings.setBoolValue("InvertVert", false);
        // oSettings.setBoolValue("InvertDepth", false);
)script";

const char* const scriptLoader = R"script(
        oSettings.setIntValue("RunSilent", 1);

        var oBatch = new DzMorphLoaderBatch();
        var oLoader = new DzMorphLoader();
        var mode = DzMorphLoader.PrimaryNode;
        if (oNode.inherits("DzFigure"))
            mode = DzMorphLoader.SingleSkinFigure;
        if (!oLoader.setLoadMode(mode, oNode))
            throw ")script";

const char* const scriptAttenuation = R"script(
        if (sAttenuateMapPath.length != 0)
        {
)script";

const char* const scriptEnd = R"script(
        }

        oBatch.addMorph(oLoader);
        return oBatch.createMorphs(oSettings, oNode, false, true);
    }
    catch (e)
    {
        return "Script error: " + e;
    }
}
)script";

std::string CallsOn(const std::vector<MorphLoadOption>& options)
{
    std::string calls;
    for (const MorphLoadOption& option : options)
        calls += fmt::format("        oLoader.{}({});\n", option.scriptMethod, option.scriptValue);
    return calls;
}

std::string ScriptText()
{
    std::string switches;
    for (const char* const key : MorphImportSwitchedOff())
        switches += fmt::format("        oSettings.setBoolValue(\"{}\", false);\n", key);
    return std::string(scriptBegin) + MORPH_IMPORT_SETTINGS_ERROR + scriptSettings + switches + scriptLoader +
           MORPH_LOAD_MODE_ERROR + "\";\n" + CallsOn(MorphLoadOptions()) + scriptAttenuation +
           CallsOn(MorphAttenuationOptions()) + scriptEnd;
}

/// Made on first use and kept for the life of the process: the host may be gone by the time statics are.
DzScript& Script()
{
    static DzScript* script = nullptr;
    if (!script) {
        script = new DzScript;
        script->addCode(str::ToQ(ScriptText()));
    }
    return *script;
}

void ThrowIfEmpty(std::string_view text, const char* message)
{
    if (text.empty())
        throw Exception(message);
}

} // namespace

std::string MorphLoaderProScript::ScriptExec(std::string_view objFile, std::string_view morphName,
                                             const QString& importSettingsJson, bool subdivide,
                                             int builtResolution, std::string_view propertyGroupPath,
                                             bool reverseDeformations, std::string_view attenuateMapPath,
                                             float attenuateStrength)
{
    ThrowIfEmpty(objFile, "missing import OBJ file");
    ThrowIfEmpty(morphName, "missing morph name");
    ThrowIfEmpty(propertyGroupPath, "missing property group path");
    QVariantList arguments;
    arguments << str::ToQ(objFile) << str::ToQ(morphName) << importSettingsJson << subdivide
              << builtResolution << str::ToQ(propertyGroupPath) << reverseDeformations
              << str::ToQ(attenuateMapPath) << attenuateStrength;
    DzScript& script = Script();
    if (!script.call(QLatin1String("Kestrom_RunMorphLoaderPro"), arguments))
        throw Exception("failed to execute script to run Morph Loader Pro");
    const std::string result = str::ToStd(script.result().toString());
    if (str::StartsWith(result, "Script error: "))
        throw Exception(result);
    return result;
}

} // namespace kst
