// Plug-in definitions.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzclassfactory.h"
#include "dzversion.h"

#include <QList>
#include <QString>

const unsigned int DZ_SDK_VERSION_MAJOR = 4;
const unsigned int DZ_SDK_VERSION_MINOR = 5;
#define DZ_SDK_VERSION DzVersion(4, 5, 0, 100)

/// What a module tells the host about itself. Owns its class factories.
class DzPlugin {
public:
    enum Status { Loaded = 0, RequiresRestart, ManuallyDisabled, EvaluationInvalid, Failed };

    DzPlugin(const QString& name, const QString& author = QString(), const QString& description = QString(),
             unsigned short major = 0, unsigned short minor = 0, unsigned short rev = 0,
             unsigned short build = 0);
    virtual ~DzPlugin();

    void setAuthor(const QString& author);
    void setVersion(unsigned short major, unsigned short minor, unsigned short rev, unsigned short build);
    void setDescription(const QString& description);
    /// Takes ownership.
    void addClassFactory(DzClassFactory* factory);

    QString getName() const { return _name; }
    QString getAuthor() const { return _author; }
    QString getDescription() const { return _description; }
    DzVersion getVersion() const { return _version; }
    QString getVersionString() const { return _version.getLongVersionString(); }
    Status getStatus() const { return _status; }
    bool isActivated() const { return _status == Loaded; }
    bool isRegistered() const { return true; }
    int getNumClassFactories() const { return _factories.size(); }
    DzClassFactory* getClassFactory(int index) const { return _factories.at(index); }

protected:
    /// Runs once when the host starts.
    virtual void startup();

private:
    Q_DISABLE_COPY(DzPlugin)
    friend class DzPluginMgr;
    QString _name, _author, _description;
    DzVersion _version;
    Status _status;
    QList<DzClassFactory*> _factories;
};

#define DZ_CUSTOM_PLUGIN_DEFINITION(pluginClass)                                                             \
    static pluginClass s_pluginDef;                                                                          \
    extern "C" Q_DECL_EXPORT DzVersion getSDKVersion()                                                       \
    {                                                                                                        \
        return DZ_SDK_VERSION;                                                                               \
    }                                                                                                        \
    extern "C" Q_DECL_EXPORT DzPlugin* getPluginDefinition()                                                 \
    {                                                                                                        \
        return &s_pluginDef;                                                                                 \
    }

#define DZ_PLUGIN_DEFINITION(pluginName)                                                                     \
    static DzPlugin s_pluginDef(QString::fromUtf8(pluginName));                                              \
    extern "C" Q_DECL_EXPORT DzVersion getSDKVersion()                                                       \
    {                                                                                                        \
        return DZ_SDK_VERSION;                                                                               \
    }                                                                                                        \
    extern "C" Q_DECL_EXPORT DzPlugin* getPluginDefinition()                                                 \
    {                                                                                                        \
        return &s_pluginDef;                                                                                 \
    }

#define DZ_PLUGIN_AUTHOR(author)                                                                             \
    static struct PluginAuthor {                                                                             \
        PluginAuthor() { s_pluginDef.setAuthor(QString::fromUtf8(author)); }                                 \
    } s_pluginAuthor;

#define DZ_PLUGIN_VERSION(major, minor, revision, build)                                                     \
    static struct PluginVersion {                                                                            \
        PluginVersion() { s_pluginDef.setVersion(major, minor, revision, build); }                           \
    } s_pluginVersion;

#define DZ_PLUGIN_DESCRIPTION(description)                                                                   \
    static struct PluginDescription {                                                                        \
        PluginDescription() { s_pluginDef.setDescription(description); }                                     \
    } s_pluginDescription;

#define DZ_PLUGIN_FACTORY_BODY(typeName, guid)                                                               \
    static struct typeName##FactoryAdder {                                                                   \
        typeName##FactoryAdder()                                                                             \
        {                                                                                                    \
            s_pluginDef.addClassFactory(new typeName##Factory(                                               \
                &typeName::staticMetaObject, DzGuid::fromString(QLatin1String("{" #guid "}"))));             \
        }                                                                                                    \
    } s_##typeName##FactoryAdder;

/// A factory for a class with a constructor without arguments. The GUID is written bare.
#define DZ_PLUGIN_CLASS_GUID(typeName, guid)                                                                 \
    class typeName##Factory : public DzTCustomClassFactory<typeName> {                                       \
    public:                                                                                                  \
        typeName##Factory(const QMetaObject* metaObject, const DzGuid& id)                                   \
            : DzTCustomClassFactory<typeName>(metaObject, id)                                                \
        {                                                                                                    \
        }                                                                                                    \
        QObject* createInstance() const override { return new typeName; }                                    \
        QObject* createInstance(const QVariantList&) const override { return new typeName; }                 \
    };                                                                                                       \
    DZ_PLUGIN_FACTORY_BODY(typeName, guid)

/// Declares typeNameFactory and leaves its two createInstance methods to the author.
#define DZ_PLUGIN_CUSTOM_CLASS_GUID(typeName, guid)                                                          \
    class typeName##Factory : public DzClassFactory {                                                        \
    public:                                                                                                  \
        typeName##Factory(const QMetaObject* metaObject, const DzGuid& id)                                   \
            : DzClassFactory(metaObject, id) {}                                                              \
        QObject* createInstance() const override;                                                            \
        QObject* createInstance(const QVariantList& arguments) const override;                               \
    };                                                                                                       \
    DZ_PLUGIN_FACTORY_BODY(typeName, guid)
