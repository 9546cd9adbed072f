// Plug-in definitions and loading modules.
// SPDX-License-Identifier: MIT

#include "dzplugin.h"
#include "dzpluginmgr.h"

#include "openhost/diagnostics.h"

#include <QDir>
#include <QFileInfo>
#include <QLibrary>

#include <algorithm>
#include <vector>

#include <locale.h>

DzPlugin::DzPlugin(const QString& name, const QString& author, const QString& description,
                   unsigned short major, unsigned short minor, unsigned short rev, unsigned short build)
    : _name(name), _author(author), _description(description), _version(major, minor, rev, build),
      _status(Loaded)
{
}

DzPlugin::~DzPlugin()
{
    qDeleteAll(_factories);
}

void DzPlugin::setAuthor(const QString& author)
{
    _author = author;
}

void DzPlugin::setVersion(unsigned short major, unsigned short minor, unsigned short rev,
                          unsigned short build)
{
    _version = DzVersion(major, minor, rev, build);
}

void DzPlugin::setDescription(const QString& description)
{
    _description = description;
}

void DzPlugin::addClassFactory(DzClassFactory* factory)
{
    if (factory && !_factories.contains(factory))
        _factories.append(factory);
}

void DzPlugin::startup() {}

namespace {

using VersionFunction = DzVersion (*)();
using DefinitionFunction = DzPlugin* (*)();

} // namespace

struct DzPluginMgr::Impl {
    struct Entry {
        DzPlugin* plugin; ///< its module's, or a record of ours for what failed
        QString filename; ///< empty for a part of the host
        QString failure;
        std::unique_ptr<DzPlugin> failed;
        std::unique_ptr<QLibrary> module;
    };
    std::vector<Entry> entries;

    std::vector<Entry>::iterator find(const QString& name)
    {
        return std::find_if(entries.begin(), entries.end(),
                            [&name](const Entry& entry) { return entry.plugin->getName() == name; });
    }
    const Entry* entryOf(const DzPlugin* plugin) const
    {
        for (const Entry& entry : entries)
            if (entry.plugin == plugin)
                return &entry;
        return nullptr;
    }
};

DzPluginMgr::DzPluginMgr() : _impl(new Impl) {}

DzPluginMgr::~DzPluginMgr()
{
    while (!_impl->entries.empty()) {
        if (_impl->entries.back().module)
            _impl->entries.back().module->unload();
        _impl->entries.pop_back();
    }
}

DzPlugin* DzPluginMgr::findPlugin(const QString& name) const
{
    const auto found = _impl->find(name);
    return found == _impl->entries.end() ? nullptr : found->plugin;
}

int DzPluginMgr::getNumPlugins() const
{
    return static_cast<int>(_impl->entries.size());
}

DzPlugin* DzPluginMgr::getPlugin(int index) const
{
    const bool isInRange = index >= 0 && index < getNumPlugins();
    return isInRange ? _impl->entries[static_cast<std::size_t>(index)].plugin : nullptr;
}

QString DzPluginMgr::getFilename(const DzPlugin* plugin) const
{
    const Impl::Entry* const entry = _impl->entryOf(plugin);
    return entry ? entry->filename : QString();
}

QString DzPluginMgr::getFailure(const DzPlugin* plugin) const
{
    const Impl::Entry* const entry = _impl->entryOf(plugin);
    return entry ? entry->failure : QString();
}

namespace {

/// The system's linker says what is wrong in the language of the thread's locale, and all sentences here are
/// English.
bool LoadInEnglish(QLibrary& library)
{
    const locale_t english = newlocale(LC_MESSAGES_MASK, "C", duplocale(uselocale(nullptr)));
    const locale_t former = uselocale(english);
    const bool isLoaded = library.load();
    uselocale(former);
    freelocale(english);
    return isLoaded;
}

/// The module's definition; null, with the reason, when it is none of ours.
DzPlugin* DefinitionOf(QLibrary& library, QString* reason)
{
    const QString filename = library.fileName();
    if (!LoadInEnglish(library)) {
        *reason = library.errorString();
        return nullptr;
    }
    const auto version = reinterpret_cast<VersionFunction>(library.resolve("getSDKVersion"));
    const auto definition = reinterpret_cast<DefinitionFunction>(library.resolve("getPluginDefinition"));
    if (!version || !definition) {
        *reason = QStringLiteral("\"%1\" is no plug-in").arg(filename);
        return nullptr;
    }
    if (version().getMajorVersion() != DZ_SDK_VERSION_MAJOR) {
        *reason = QStringLiteral("\"%1\" is made for another host, version %2")
                      .arg(filename, version().getLongVersionString());
        return nullptr;
    }
    DzPlugin* const plugin = definition();
    if (!plugin)
        *reason = QStringLiteral("\"%1\" defines nothing").arg(filename);
    return plugin;
}

} // namespace

DzPlugin* DzPluginMgr::loadPlugin(const QString& filename, QString* error)
{
    QString reason;
    auto library = std::make_unique<QLibrary>(filename);
    DzPlugin* const plugin = DefinitionOf(*library, &reason);
    const bool isSecond = plugin && findPlugin(plugin->getName());
    if (isSecond)
        reason = QStringLiteral("plug-in \"%1\" is loaded already").arg(plugin->getName());
    if (error)
        *error = reason;
    if (reason.isEmpty()) {
        _impl->entries.push_back({plugin, filename, QString(), nullptr, std::move(library)});
        plugin->startup();
        emit pluginLoaded(plugin->getName());
        return plugin;
    }
    openhost::Report(base::FromSentence(base::Severity::Error, filename.toStdString(), reason.toStdString()));
    const QString name = QFileInfo(filename).completeBaseName();
    library->unload();
    if (isSecond || findPlugin(name))
        return nullptr;
    auto failed = std::make_unique<DzPlugin>(name, QString(), reason);
    failed->_status = DzPlugin::Failed;
    DzPlugin* const record = failed.get();
    _impl->entries.push_back({record, filename, reason, std::move(failed), nullptr});
    return nullptr;
}

int DzPluginMgr::loadPlugins(const QString& folder)
{
    int loaded = 0;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files, QDir::Name))
        if (QLibrary::isLibrary(file.fileName()) && loadPlugin(file.absoluteFilePath()))
            ++loaded;
    return loaded;
}

bool DzPluginMgr::unloadPlugin(const QString& name)
{
    const auto found = _impl->find(name);
    if (found == _impl->entries.end() || !found->module)
        return false;
    emit aboutToUnload(name);
    const std::unique_ptr<QLibrary> library = std::move(found->module);
    _impl->entries.erase(found);
    library->unload();
    return true;
}

bool DzPluginMgr::addPlugin(DzPlugin* plugin)
{
    if (!plugin || findPlugin(plugin->getName()))
        return false;
    _impl->entries.push_back({plugin, QString(), QString(), nullptr, nullptr});
    plugin->startup();
    emit pluginLoaded(plugin->getName());
    return true;
}

bool DzPluginMgr::removePlugin(const QString& name)
{
    const auto found = _impl->find(name);
    if (found == _impl->entries.end() || !found->filename.isEmpty())
        return false;
    emit aboutToUnload(name);
    _impl->entries.erase(found);
    return true;
}

const DzClassFactory* DzPluginMgr::findClassFactory(const QString& className) const
{
    for (const Impl::Entry& entry : _impl->entries)
        for (int i = 0; i < entry.plugin->getNumClassFactories(); ++i)
            if (entry.plugin->getClassFactory(i)->className() == className)
                return entry.plugin->getClassFactory(i);
    return nullptr;
}
