// Exporters, importers, savers and their managers.
// SPDX-License-Identifier: MIT

#include "app/operations.h"
#include "dzassetiofilter.h"
#include "dzassetmgr.h"
#include "dzexporter.h"
#include "dzexportmgr.h"
#include "dzfileiosettings.h"
#include "dzimporter.h"
#include "dzimportmgr.h"
#include "dznode.h"
#include "openhost/class_registry.h"

#include <QFileInfo>

#include <memory>

DzFileIO::DzFileIO() = default;
DzFileIO::~DzFileIO() = default;

QString DzFileIO::getDescription() const
{
    return QString();
}
void DzFileIO::getDefaultOptions(DzFileIOSettings*) const {}

bool DzFileIO::getOptions(DzFileIOSettings* options, bool, const QString&)
{
    if (!options)
        return false;
    DzFileIOSettings defaults;
    getDefaultOptions(&defaults);
    for (int i = 0; i < defaults.getNumValues(); ++i) {
        if (options->hasKey(defaults.getKey(i)) < 0)
            options->copySetting(defaults.getKey(i), &defaults);
    }
    return true;
}

bool DzFileIO::showOptions() const
{
    return false;
}

namespace {

/// The given options, or the defaults, after asking; options that are to run silently are taken as they are.
/// @return false when the user cancels
bool AgreeOptions(DzFileIO& fileIO, const DzFileIOSettings* given, const QString& filename,
                  DzFileIOSettings* agreed)
{
    if (given)
        *agreed = *given;
    if (agreed->getIntValue(QStringLiteral("RunSilent")) != 0)
        return true;
    return fileIO.getOptions(agreed, true, filename);
}

} // namespace

DzExporter::DzExporter(const QString& extension) : _extension(extension) {}
DzExporter::~DzExporter() = default;

DzError DzExporter::writeFile(const QString& filename, const DzFileIOSettings* options)
{
    DzFileIOSettings agreed;
    if (!AgreeOptions(*this, options, filename, &agreed))
        return DZ_USER_CANCELLED_OPERATION;
    if (!openhost::Allows(openhost::Operation::Export, filename))
        return DZ_OPERATION_FAILED_ERROR;
    return write(filename, &agreed);
}

bool DzExporter::isFileExporter() const
{
    return true;
}

DzImporter::DzImporter() = default;
DzImporter::~DzImporter() = default;

DzError DzImporter::readFile(const QString& filename, const DzFileIOSettings* options)
{
    DzFileIOSettings agreed;
    if (!QFileInfo(filename).isFile())
        return DZ_UNABLE_TO_OPEN_FILE_ERROR; // before anybody chooses options for it
    if (!AgreeOptions(*this, options, filename, &agreed))
        return DZ_USER_CANCELLED_OPERATION;
    if (!openhost::Allows(openhost::Operation::Import, filename))
        return DZ_OPERATION_FAILED_ERROR;
    for (QObject* node : std::as_const(_nodes))
        node->disconnect(this);
    _nodes.clear();
    return read(filename, &agreed);
}

bool DzImporter::recognize(const QString& filename) const
{
    const QString suffix = QFileInfo(filename).suffix();
    for (int i = 0; i < getNumExtensions(); ++i) {
        if (getExtension(i).compare(suffix, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

int DzImporter::getNumImportedNodes() const
{
    return _nodes.size();
}
DzNode* DzImporter::getImportedNode(int index) const
{
    return static_cast<DzNode*>(_nodes.value(index));
}

void DzImporter::addImportedNode(DzNode* node)
{
    _nodes.append(node);
    connect(node, SIGNAL(destroyed(QObject*)), SLOT(handleNodeDestroyed(QObject*)));
}

void DzImporter::handleNodeDestroyed(QObject* node)
{
    _nodes.removeOne(node);
}

DzAssetIOFilter::DzAssetIOFilter() = default;
DzAssetIOFilter::~DzAssetIOFilter() = default;
bool DzAssetIOFilter::isSupportAssetFilter() const
{
    return false;
}
QString DzAssetIOFilter::getStandardSaveRelativePath() const
{
    return QString();
}

DzAssetMgr::DzAssetMgr() = default;
DzAssetMgr::~DzAssetMgr() = default;

namespace {

template <class T>
T* Make(const DzClassFactory* factory)
{
    std::unique_ptr<QObject> object(factory ? factory->createInstance() : nullptr);
    T* const made = qobject_cast<T*>(object.get());
    if (made)
        object.release();
    return made;
}

template <class T>
QList<const DzClassFactory*> FactoriesOf()
{
    QList<const DzClassFactory*> matching;
    for (const DzClassFactory* factory : openhost::BuiltInClassFactories()) {
        if (factory->metaObject()->inherits(&T::staticMetaObject))
            matching.append(factory);
    }
    return matching;
}

} // namespace

DzExportMgr::DzExportMgr() = default;
DzExportMgr::~DzExportMgr() = default;

DzExporter* DzExportMgr::findExporterByClassName(const QString& className) const
{
    return Make<DzExporter>(openhost::FindBuiltInClassFactory(className));
}

int DzExportMgr::getNumExporters() const
{
    return FactoriesOf<DzExporter>().size();
}
DzExporter* DzExportMgr::getExporter(int index) const
{
    return Make<DzExporter>(FactoriesOf<DzExporter>().value(index));
}

DzImportMgr::DzImportMgr() = default;
DzImportMgr::~DzImportMgr() = default;

DzImporter* DzImportMgr::findImporterByClassName(const QString& className) const
{
    return Make<DzImporter>(openhost::FindBuiltInClassFactory(className));
}

int DzImportMgr::getNumImporters() const
{
    return FactoriesOf<DzImporter>().size();
}
DzImporter* DzImportMgr::getImporter(int index) const
{
    return Make<DzImporter>(FactoriesOf<DzImporter>().value(index));
}

DzImporter* DzImportMgr::findImporterForFile(const QString& filename) const
{
    for (const DzClassFactory* factory : FactoriesOf<DzImporter>()) {
        std::unique_ptr<DzImporter> importer(Make<DzImporter>(factory));
        if (importer && importer->recognize(filename))
            return importer.release();
    }
    return nullptr;
}
