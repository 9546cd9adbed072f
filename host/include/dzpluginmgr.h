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

    DzPlugin* findPlugin(const QString& name) const; ///< null if unknown
    int getNumPlugins() const;
    DzPlugin* getPlugin(int index) const;

    /// Loads a module, makes its classes known and starts it. Modules stay loaded until the process ends.
    /// @param error  what is wrong, when null is returned
    DzPlugin* loadPlugin(const QString& filename, QString* error = 0);
    /// A plug-in that is part of the host. Not owned.
    bool addPlugin(DzPlugin* plugin);
    const DzClassFactory* findClassFactory(const QString& className) const;

signals:
    void pluginLoaded(const QString& name);

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};
