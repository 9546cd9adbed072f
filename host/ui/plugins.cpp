// Plug-in definitions and loading modules.
// SPDX-License-Identifier: MIT

#include "dzplugin.h"
#include "dzpluginmgr.h"

#include <QHash>
#include <QLibrary>

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
    QList<DzPlugin*> plugins; ///< owned by their modules
};

DzPluginMgr::DzPluginMgr() : _impl(new Impl) {}
DzPluginMgr::~DzPluginMgr() = default;

DzPlugin* DzPluginMgr::findPlugin(const QString& name) const
{
    for (DzPlugin* plugin : std::as_const(_impl->plugins)) {
        if (plugin->getName() == name)
            return plugin;
    }
    return nullptr;
}

int DzPluginMgr::getNumPlugins() const
{
    return _impl->plugins.size();
}
DzPlugin* DzPluginMgr::getPlugin(int index) const
{
    return _impl->plugins.value(index);
}

DzPlugin* DzPluginMgr::loadPlugin(const QString& filename, QString* error)
{
    QString reason;
    QLibrary library(filename);
    const auto version = reinterpret_cast<VersionFunction>(library.resolve("getSDKVersion"));
    const auto definition = reinterpret_cast<DefinitionFunction>(library.resolve("getPluginDefinition"));
    DzPlugin* plugin = nullptr;
    if (!library.isLoaded())
        reason = library.errorString();
    else if (!version || !definition)
        reason = QStringLiteral("\"%1\" is no plug-in").arg(filename);
    else if (version().getMajorVersion() != DZ_SDK_VERSION_MAJOR)
        reason = QStringLiteral("\"%1\" is made for another host, version %2")
                     .arg(filename, version().getLongVersionString());
    else
        plugin = definition();
    if (plugin && !addPlugin(plugin)) {
        reason = QStringLiteral("plug-in \"%1\" is loaded already").arg(plugin->getName());
        plugin = nullptr;
    }
    if (error)
        *error = reason;
    return plugin;
}

bool DzPluginMgr::addPlugin(DzPlugin* plugin)
{
    if (!plugin || findPlugin(plugin->getName()))
        return false;
    _impl->plugins.append(plugin);
    plugin->startup();
    emit pluginLoaded(plugin->getName());
    return true;
}

const DzClassFactory* DzPluginMgr::findClassFactory(const QString& className) const
{
    for (const DzPlugin* plugin : std::as_const(_impl->plugins)) {
        for (int i = 0; i < plugin->getNumClassFactories(); ++i) {
            if (plugin->getClassFactory(i)->className() == className)
                return plugin->getClassFactory(i);
        }
    }
    return nullptr;
}
