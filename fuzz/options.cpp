// Option sets of files, as JSON or XML: those of the OBJ formats and of the morph loader.
// SPDX-License-Identifier: MIT

#include "dzexporter.h"
#include "dzexportmgr.h"
#include "dzfileiosettings.h"
#include "dzimporter.h"
#include "dzimportmgr.h"
#include "fuzz/fuzzed_host.h"
#include "fuzz/target.h"
#include "tests/host/content_fixture.h"
#include "tools/morph_loader.h"

#include <memory>

namespace {

std::vector<std::string> Seeds()
{
    fuzz::FreshHost(fuzz::ScratchFolder());
    const std::unique_ptr<DzExporter> exporter(
        dzApp->getExportMgr()->findExporterByClassName(QStringLiteral("DzObjExporter")));
    DzFileIOSettings options;
    exporter->getDefaultOptions(&options);
    const std::filesystem::path file = fuzz::ScratchFolder() / "Loader.json";
    const QString name = QString::fromStdString(file.string());
    DzMorphLoader().saveObjectSettingsToConfigFile(name, QStringLiteral("Doll"), true);
    DzMorphLoader().saveObjectSettingsToConfigFile(name, QStringLiteral("Doll"), false);
    return {
        options.toJsonString().toStdString(), options.toString().toStdString(), ReadBytes(file),
        R"({"Scale": 1e308, "LatAxis": "z", "VertAxis": "Y", "DepthAxis": "X", "FloatPrecision": -1, "a": {"b": [1]}})"};
}

void ReadAndWriteObj(const DzFileIOSettings& options)
{
    static const std::filesystem::path file =
        fuzz::WriteScratch("in.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    const std::unique_ptr<DzImporter> importer(
        dzApp->getImportMgr()->findImporterByClassName(QStringLiteral("DzObjImporter")));
    importer->readFile(QString::fromStdString(file.string()), &options);
    const std::unique_ptr<DzExporter> exporter(
        dzApp->getExportMgr()->findExporterByClassName(QStringLiteral("DzObjExporter")));
    exporter->writeFile(QString::fromStdString((fuzz::ScratchFolder() / "out.obj").string()), &options);
}

void Feed(std::string_view bytes)
{
    fuzz::FreshHost(fuzz::ScratchFolder());
    DzFileIOSettings options;
    if (options.fromString(QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size())))) {
        DzFileIOSettings again;
        fuzz::Demand(again.fromString(options.toString()), "written XML is read again");
        fuzz::Demand(again.getNumValues() == options.getNumValues(), "written XML keeps every option");
        DzFileIOSettings fromJson;
        fuzz::Demand(fromJson.fromString(options.toJsonString()), "written JSON is read again");
        fuzz::Demand(fromJson.getNumValues() == options.getNumValues(), "written JSON keeps every option");
        options.setIntValue(QStringLiteral("RunSilent"), 1);
        ReadAndWriteObj(options);
    }
    const QString file = QString::fromStdString(fuzz::WriteScratch("Loader.json", bytes).string());
    DzMorphLoader loader;
    loader.readObjectCommonSettingsFromConfigFile(file);
    loader.readObjectSettingsFromConfigFile(file, QStringLiteral("Doll"));
    if (loader.saveObjectSettingsToConfigFile(file, QStringLiteral("Doll"), false))
        fuzz::Demand(DzMorphLoader().readObjectSettingsFromConfigFile(file, QStringLiteral("Doll")),
                     "saved settings are read again");
}

const fuzz::Registration registration({"options", Seeds, Feed});

} // namespace
