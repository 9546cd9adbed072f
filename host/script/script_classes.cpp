// The host's classes in scripts.
// SPDX-License-Identifier: MIT

#include "script_classes.h"

#include "dz3dviewport.h"
#include "dzaction.h"
#include "dzactionmgr.h"
#include "dzapp.h"
#include "dzasset.h"
#include "dzassetiofilter.h"
#include "dzassetiomgr.h"
#include "dzassetmgr.h"
#include "dzbasiccamera.h"
#include "dzbone.h"
#include "dzboolproperty.h"
#include "dzbox3.h"
#include "dzcontentfolder.h"
#include "dzcontentmgr.h"
#include "dzdform.h"
#include "dzdformmodifier.h"
#include "dzdrawstyle.h"
#include "dzenumproperty.h"
#include "dzerclink.h"
#include "dzerror.h"
#include "dzexporter.h"
#include "dzexportmgr.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfileiosettings.h"
#include "dzfloatproperty.h"
#include "dzimporter.h"
#include "dzimportmgr.h"
#include "dzintproperty.h"
#include "dzmainwindow.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dznumericcontroller.h"
#include "dzobject.h"
#include "dzpane.h"
#include "dzpanemgr.h"
#include "dzplugin.h"
#include "dzpluginmgr.h"
#include "dzpropertygroup.h"
#include "dzpropertygrouptree.h"
#include "dzrenderer.h"
#include "dzrendermgr.h"
#include "dzrenderoptions.h"
#include "dzscene.h"
#include "dzskinbinding.h"
#include "dzstringproperty.h"
#include "dzundostack.h"
#include "dzuri.h"
#include "dzviewport.h"
#include "dzviewportmgr.h"
#include "dzviewtool.h"
#include "dzweightmap.h"
#include "openhost/class_registry.h"
#include "openhost/script_reference.h"
#include "script_constructors.h"
#include "script_session.h"
#include "script_values.h"
#include "tools/morph_loader.h"
#include "tools/morph_loader_batch.h"
#include "tools/transfer_utility.h"

#include <QMetaEnum>
#include <QSize>
#include <QWidget>

#include <algorithm>
#include <iterator>
#include <map>

Q_DECLARE_METATYPE(QObjectList) // under the name that the engine gives it
Q_DECLARE_METATYPE(DzVec3)
Q_DECLARE_METATYPE(DzBox3)
Q_DECLARE_METATYPE(DzUri)
Q_DECLARE_METATYPE(DzERCLink::ERCType)
Q_DECLARE_METATYPE(DzScene::DzOpenMethod)

namespace openhost {

namespace {

template <class T>
QScriptValue PointerToScript(QScriptEngine* engine, T* const& object)
{
    return WrapObject(*engine, object);
}

QScriptValue ListToScript(QScriptEngine* engine, const QObjectList& objects)
{
    QScriptValue array = engine->newArray(static_cast<uint>(objects.size()));
    for (int i = 0; i < objects.size(); ++i)
        array.setProperty(static_cast<quint32>(i), WrapObject(*engine, objects.at(i)));
    return array;
}

void ListFromScript(const QScriptValue& array, QObjectList& objects)
{
    objects.clear();
    const quint32 count = array.property(QStringLiteral("length")).toUInt32();
    for (quint32 i = 0; i < count; ++i)
        objects.append(array.property(i).toQObject());
}

template <class T>
void PointerFromScript(const QScriptValue& value, T*& object)
{
    object = qobject_cast<T*>(value.toQObject());
}

template <class... Classes>
struct ClassList {
    static void registerPointers(QScriptEngine& engine)
    {
        (qScriptRegisterMetaType<Classes*>(&engine, PointerToScript<Classes>, PointerFromScript<Classes>),
         ...);
    }
    static std::vector<const QMetaObject*> metaObjects() { return {&Classes::staticMetaObject...}; }
};

/// What methods take and give.
using PassedClasses =
    ClassList<DzBase, DzElement, DzNode, DzSkeleton, DzFigure, DzBone, DzObject, DzShape, DzFacetShape,
              DzModifier, DzMorph, DzSkinBinding, DzDForm, DzDFormModifier, DzCamera, DzBasicCamera,
              DzProperty, DzNumericProperty, DzFloatProperty, DzIntProperty, DzBoolProperty, DzEnumProperty,
              DzStringProperty, DzPropertyGroup, DzPropertyGroupTree, DzController, DzNumericController,
              DzERCLink, DzGeometry, DzVertexMesh, DzFacetMesh, DzMorphDeltas, DzWeightMap, DzScene,
              DzMainWindow, DzActionMgr, DzAction, DzPaneMgr, DzPane, DzViewportMgr, DzContentMgr,
              DzContentFolder, DzAsset, DzAssetMgr, DzAssetIOMgr, DzAssetIOFilter, DzExportMgr, DzExporter,
              DzImportMgr, DzImporter, DzPluginMgr, DzViewport, Dz3DViewport, DzViewTool, DzDrawStyle,
              DzUserDrawStyle, DzRenderMgr, DzRenderOptions, DzRenderer, DzSettings, DzFileIOSettings,
              DzMorphLoader, DzMorphLoaderBatch, DzTransferUtility, DzUndoStack>;

QScriptValue SizeToScript(QScriptEngine* engine, const QSize& size)
{
    QScriptValue value = engine->newObject();
    value.setProperty(QStringLiteral("width"), size.width());
    value.setProperty(QStringLiteral("height"), size.height());
    return value;
}

void SizeFromScript(const QScriptValue& value, QSize& size)
{
    size = QSize(value.property(QStringLiteral("width")).toInt32(),
                 value.property(QStringLiteral("height")).toInt32());
}

/// An object, since scripts ask an address for its parts and for toString().
QScriptValue UriToScript(QScriptEngine* engine, const DzUri& uri)
{
    QScriptValue value = engine->newObject();
    value.setProperty(QStringLiteral("filePath"), uri.getFilePath());
    value.setProperty(QStringLiteral("id"), uri.getId());
    value.setProperty(QStringLiteral("text"), uri.toString());
    value.setProperty(QStringLiteral("toString"),
                      engine->evaluate(QStringLiteral("(function() { return this.text; })")));
    return value;
}

void UriFromScript(const QScriptValue& value, DzUri& uri)
{
    uri = DzUri(value.toString());
}

template <class Enumeration>
QScriptValue EnumerationToScript(QScriptEngine*, const Enumeration& value)
{
    return QScriptValue(static_cast<int>(value));
}

const char* NameOf(DzERCLink::ERCType)
{
    return "ERCType";
}
const char* NameOf(DzScene::DzOpenMethod)
{
    return "DzOpenMethod";
}

/// What is none of its values is an error of the script; the call then gets the first.
template <class Owner, class Enumeration>
void EnumerationFromScript(const QScriptValue& number, Enumeration& value)
{
    value = Enumeration();
    const QMetaObject& owner = Owner::staticMetaObject;
    const QMetaEnum known = owner.enumerator(owner.indexOfEnumerator(NameOf(value)));
    if (known.valueToKey(number.toInt32()))
        value = static_cast<Enumeration>(number.toInt32());
    else
        number.engine()->currentContext()->throwError(
            QScriptContext::RangeError,
            QStringLiteral("%1 is no %2").arg(number.toString(), QLatin1String(NameOf(value))));
}

void RegisterTypes(QScriptEngine& engine)
{
    // The engine's own ways of wrapping leave deletion and signals open.
    ClassList<QObject, QWidget>::registerPointers(engine);
    PassedClasses::registerPointers(engine);
    qScriptRegisterMetaType<QObjectList>(&engine, ListToScript, ListFromScript);
    qScriptRegisterMetaType<DzVec3>(&engine, VectorToScript, VectorFromScript);
    qScriptRegisterMetaType<DzBox3>(&engine, BoxToScript, BoxFromScript);
    qScriptRegisterMetaType<QSize>(&engine, SizeToScript, SizeFromScript);
    qScriptRegisterMetaType<DzUri>(&engine, UriToScript, UriFromScript);
    qScriptRegisterMetaType<DzERCLink::ERCType>(&engine, EnumerationToScript,
                                                EnumerationFromScript<DzERCLink>);
    qScriptRegisterMetaType<DzScene::DzOpenMethod>(&engine, EnumerationToScript,
                                                   EnumerationFromScript<DzScene>);
    qRegisterMetaType<DzError>("DzError");
}

/// `new Class(arguments)`: the session keeps what the factory makes until somebody else does.
QScriptValue Construct(QScriptContext* context, QScriptEngine* engine, void* data)
{
    const auto& factory = *static_cast<const DzClassFactory*>(data);
    const auto* const takes = dynamic_cast<const TakesArguments*>(&factory);
    if (!takes && context->argumentCount() > 0)
        return DzClassFactory::refuseArguments(*context, factory.className(), QString());
    QVariantList arguments;
    for (int i = 0; i < context->argumentCount(); ++i)
        arguments.append(context->argument(i).toVariant());
    QObject* const object =
        arguments.isEmpty() ? factory.createInstance() : factory.createInstance(arguments);
    if (!object && takes)
        return DzClassFactory::refuseArguments(*context, factory.className(),
                                               QLatin1String(takes->arguments()));
    if (!object)
        return context->throwError(QStringLiteral("%1 cannot be made").arg(factory.className()));
    ScriptSession::Of(engine).adopt(object);
    return PointerToScript<QObject>(engine, object);
}

QScriptValue Uninstantiable(QScriptContext* context, QScriptEngine*)
{
    return context->throwError(QStringLiteral("this class cannot be made in a script"));
}

QScriptValue Inherits(QScriptContext* context, QScriptEngine*)
{
    const QObject* const object = context->thisObject().toQObject();
    return QScriptValue(object && object->inherits(context->argument(0).toString().toUtf8().constData()));
}

/// Classes that scripts name for their enumerations only.
const QMetaObject* const enumerationClasses[] = {&DzScene::staticMetaObject};

const BuiltInClass<DzNode> nodeRegistration;
const BuiltInClass<DzMorph> morphRegistration;
const BuiltInClass<DzMorphDeltas> deltasRegistration;

} // namespace

QScriptValue WrapObject(QScriptEngine& engine, QObject* object)
{
    if (!object)
        return engine.nullValue();
    QScriptValue wrapper =
        engine.newQObject(object, QScriptEngine::QtOwnership,
                          QScriptEngine::PreferExistingWrapperObject | QScriptEngine::ExcludeDeleteLater);
    ScriptSession::Of(&engine).signalGuard().guard(wrapper);
    return wrapper;
}

std::vector<ScriptClass> ScriptClasses()
{
    std::map<QString, ScriptClass> classes;
    const auto add = [&classes](const QMetaObject* metaObject) {
        for (; metaObject && metaObject != &QObject::staticMetaObject; metaObject = metaObject->superClass())
            if (const QString name = QLatin1String(metaObject->className());
                name.startsWith(QLatin1String("Dz")))
                classes[name].metaObject = metaObject;
    };
    for (const QMetaObject* const metaObject : PassedClasses::metaObjects())
        add(metaObject);
    add(dzApp->metaObject());
    for (const DzClassFactory* const factory : BuiltInClassFactories()) {
        add(factory->metaObject());
        const auto* const takes = dynamic_cast<const TakesArguments*>(factory);
        classes[factory->className()].arguments = QLatin1String(takes ? takes->arguments() : "");
        classes[factory->className()].isMade = true;
    }
    std::vector<ScriptClass> all;
    std::transform(classes.begin(), classes.end(), std::back_inserter(all),
                   [](const auto& entry) { return entry.second; });
    return all;
}

void RegisterScriptClasses(QScriptEngine& engine)
{
    RegisterTypes(engine);
    RegisterScriptValues(engine);
    // All wrapped objects share one prototype, which is an object of Qt's itself.
    QScriptValue prototype = WrapObject(engine, dzScene).prototype();
    prototype.setProperty(QStringLiteral("inherits"), engine.newFunction(Inherits),
                          QScriptValue::SkipInEnumeration);
    ScriptSession::Of(&engine).signalGuard().guard(prototype);
    QScriptValue global = engine.globalObject();
    for (const QMetaObject* const metaObject : enumerationClasses)
        global.setProperty(QLatin1String(metaObject->className()),
                           engine.newQMetaObject(metaObject, engine.newFunction(Uninstantiable)));
    for (const DzClassFactory* const factory : BuiltInClassFactories()) {
        const QScriptValue constructor = engine.newFunction(Construct, const_cast<DzClassFactory*>(factory));
        global.setProperty(factory->className(), engine.newQMetaObject(factory->metaObject(), constructor));
    }
    const DzPluginMgr& plugins = *dzApp->getPluginMgr();
    for (int p = 0; p < plugins.getNumPlugins(); ++p)
        for (int i = 0; i < plugins.getPlugin(p)->getNumClassFactories(); ++i)
            plugins.getPlugin(p)->getClassFactory(i)->registerClass(engine);
}

} // namespace openhost
