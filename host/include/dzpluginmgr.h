// Plug-ins known to the host.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <memory>

class DzClassFactory;
class DzPlugin;

class DzPluginMgr : public QObject {
    Q_OBJECT
public:
    DzPluginMgr();
    ~DzPluginMgr();

    /// Also of one that could not be loaded: it is called after its file then. Null if unknown.
    DzPlugin* findPlugin(const QString& name) const;
    int getNumPlugins() const;
    DzPlugin* getPlugin(int index) const;
    /// The module's file; empty for a plug-in that is part of the host.
    QString getFilename(const DzPlugin* plugin) const;
    /// Why a plug-in's status is Failed; empty for any other status.
    QString getFailure(const DzPlugin* plugin) const;

    /// Loads a module, makes its classes known and starts it. One that cannot be loaded is listed as failed
    /// and harms nothing else.
    /// @param error  what is wrong, when null is returned
    DzPlugin* loadPlugin(const QString& filename, QString* error = 0);
    /// Loads every module of a folder, by name. A folder that is not there has none.
    /// @return how many were loaded
    int loadPlugins(const QString& folder);
    /// Takes its actions away and unloads its module. Nothing that it made must be left.
    /// @return false for a plug-in that is part of the host, and for an unknown one
    bool unloadPlugin(const QString& name);
    /// A plug-in that is part of the host. Not owned.
    bool addPlugin(DzPlugin* plugin);
    /// Takes a plug-in that is part of the host away again.
    /// @return false for a module, and for an unknown one
    bool removePlugin(const QString& name);
    const DzClassFactory* findClassFactory(const QString& className) const;

signals:
    void pluginLoaded(const QString& name);
    void aboutToUnload(const QString& name);

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};
