// The host's Morph Loader Pro, run by a fixed script.
// SPDX-License-Identifier: MIT

#include "ks_morph-loader-script.h"

#include "ks_exception.h"
#include "ks_string.h"

#include <QString>
#include <QVariant>

#include <dzscript.h>

namespace kst {

namespace {

const char* const scriptText = R"script(
function Kestrom_RunMorphLoaderPro(sInputFilename, sMorphName, sJsonObjImportSettings, fSubd, iSubdBuiltResolution,
                                   sPropertyGroupPath, fReverseDeformations, sAttenuateMapPath, tAttenuate)
{
    try
    {
        var oNode = Scene.getPrimarySelection();

        var oSettings = new DzFileIOSettings();
        if (!oSettings.fromString(sJsonObjImportSettings))
            throw "invalid JSON settings for OBJ importer in Morph Loader Pro";
        // The settings text brings the axes and the scale:
        // oSettings.setFloatValue("Scale", 50);
        // oSettings.setStringValue("LatAxis", "X");
        // oSettings.setStringValue("VertAxis", "Y");
        // oSettings.setStringValue("DepthAxis", "Z");
        // oSettings.setBoolValue("InvertLat", false);
        // oSettings.setBoolValue("InvertVert", false);
        // oSettings.setBoolValue("InvertDepth", false);
        oSettings.setBoolValue("IncludeVT", false);
        oSettings.setBoolValue("IncludeG", false);
        oSettings.setBoolValue("IncludeUsemtl", false);
        oSettings.setBoolValue("IncludeMtllib", false);
        oSettings.setIntValue("RunSilent", 1);

        var oBatch = new DzMorphLoaderBatch();
        var oLoader = new DzMorphLoader();
        var mode = DzMorphLoader.PrimaryNode;
        if (oNode.inherits("DzFigure"))
            mode = DzMorphLoader.SingleSkinFigure;
        if (!oLoader.setLoadMode(mode, oNode))
            throw "incompatible load mode";
        oLoader.setFilename(sInputFilename);
        oLoader.setMorphName(sMorphName);
        oLoader.setMorphSubdivision(fSubd);
        oLoader.setSubdivisionBuiltResolution(iSubdBuiltResolution);
        oLoader.setSubdivisionMinResolution(0);
        oLoader.setSubdivisionMaxResolution(9);
        oLoader.setSubdivisionSmoothCage(fSubd);
        oLoader.setSubdivisionMapping(DzMorphLoader.Catmark);
        oLoader.setDeltaTolerance(0.001);
        oLoader.setCreateControlProperty(false);
        oLoader.setPropertyGroupPath(sPropertyGroupPath);
        oLoader.setReverseDeformations(fReverseDeformations);
        oLoader.setOverwriteExisting(DzMorphLoader.DeltasOnly);
        oLoader.setCleanUpOrphans(true);
        oLoader.setMorphMirroring(DzMorphLoader.DoNotMirror);
        if (sAttenuateMapPath.length != 0)
        {
            oLoader.setAttenuateMapPath(sAttenuateMapPath);
            oLoader.setAttenuateStrength(tAttenuate);
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

/// Made on first use and kept for the life of the process: the host may be gone by the time statics are.
DzScript& Script()
{
    static DzScript* script = nullptr;
    if (!script) {
        script = new DzScript;
        script->addCode(str::ToQ(scriptText));
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
