// The host's Parameters, Content Library and Smart Content panes.
// SPDX-License-Identifier: MIT

#include "ks_panes.h"

#include "ks_daz-managers.h"
#include "ks_exception.h"
#include "ks_qt-compat.h"
#include "ks_string.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <dzpane.h>
#include <dzpanemgr.h>
#include <dzscript.h>

namespace kst {
namespace daz {

namespace {

const char* const libraryScriptText = R"script(
function kstContentLibraryPane_getSelectedAssetPathsOrThrow()
{
    try
    {
        var oPane = MainWindow.getPaneMgr().findPane("DzContentLibraryPane");
        if (!oPane)
            throw "no pane";
        var aAssets = oPane.getSelectedAssets();
        var aPaths = [];
        for (var i = 0; i < aAssets.length; ++i)
            aPaths.push(aAssets[i].getAsLocalFile());
        return aPaths.join(":::");
    }
    catch (e)
    {
        return "Script error: " + e;
    }
}
)script";

const char* const smartScriptText = R"script(
function kstSmartContentPane_getSelectedAssetPathsOrThrow()
{
    try
    {
        var oPane = MainWindow.getPaneMgr().findPane("DzSmartContentPane");
        if (!oPane)
            throw "no pane";
        var oTab = oPane.getFileContentTab();
        if (!oTab)
            throw "no file sub-tab";
        var aAssets = oTab.getSelectedAssets();
        var aPaths = [];
        for (var i = 0; i < aAssets.length; ++i)
            aPaths.push(aAssets[i].getAsLocalFile());
        return aPaths.join(":::");
    }
    catch (e)
    {
        return "Script error: " + e;
    }
}
)script";

/// Kept for the life of the process: the host may be gone by the time statics are.
DzScript* MakeScript(const char* text)
{
    auto* const script = new DzScript;
    script->addCode(str::ToQ(text));
    return script;
}

DzScript& LibraryScript()
{
    static DzScript* const script = MakeScript(libraryScriptText);
    return *script;
}

DzScript& SmartScript()
{
    static DzScript* const script = MakeScript(smartScriptText);
    return *script;
}

std::vector<std::string> SelectedPaths_X(DzScript& script, const char* function)
{
    if (!script.call(QLatin1String(function), QVariantList()))
        throw Exception("failed to execute script to get selected assets");
    const std::string paths = str::ToStd(script.result().toString());
    if (str::StartsWith(paths, "Script error"))
        throw Exception(paths);
    return str::ExplodeVector(paths, ":::", false, false);
}

void Show_X(DzPane& pane)
{
    GetPaneMgr_X(true)->showPane(&pane);
}

QStringList ToList(const std::vector<std::string>& texts)
{
    QStringList list;
    for (const std::string& text : texts)
        list << str::ToQ(text);
    return list;
}

/// What both tabs have in common: one method, which each calls its own.
template <class Derived>
class Tab : public qt::MagicImpl<QObject, Derived> {
public:
    explicit Tab(QObject& tab) : qt::MagicImpl<QObject, Derived>(tab) {}

    void select_X(std::string_view category, const std::vector<std::string>& names) const
    {
        const QString categoryText = str::ToQ(category);
        const QStringList list = ToList(names);
        this->invoke(0, Q_ARG(QString, categoryText), Q_ARG(QStringList, list));
    }
};

class FilesTab : public Tab<FilesTab> {
public:
    using Tab<FilesTab>::Tab;
    static const std::vector<const char*>& Signatures()
    {
        static const std::vector<const char*> signatures{"selectAssets(QString,QStringList)"};
        return signatures;
    }
};

class ProductsTab : public Tab<ProductsTab> {
public:
    using Tab<ProductsTab>::Tab;
    static const std::vector<const char*>& Signatures()
    {
        static const std::vector<const char*> signatures{"selectProducts(QString,QStringList)"};
        return signatures;
    }
};

enum LibraryMethod : std::size_t { BrowseToAsset, BrowseToCategory, BrowseToProduct };
enum SmartMethod : std::size_t { SetCurrentTab };

} // namespace

ParametersPane::ParametersPane(DzPane& pane) : MagicImpl<DzPane, ParametersPane>(pane) {}

const std::vector<const char*>& ParametersPane::Signatures()
{
    static const std::vector<const char*> signatures{"jumpToProperty(DzProperty*)"};
    return signatures;
}

bool ParametersPane::jumpToProperty(DzProperty& property) const
{
    DzProperty* const argument = &property;
    return QMetaObject::invokeMethod(&object(), "jumpToProperty", Qt::DirectConnection,
                                     Q_ARG(DzProperty*, argument));
}

void ParametersPane::JumpToProperty_X(DzProperty& property)
{
    DzPaneMgr* const manager = GetPaneMgr_X(true);
    DzPane& pane = GetParametersPane_X();
    manager->showPane(&pane);
    if (!ParametersPane(pane).jumpToProperty(property))
        throw Exception("failed to invoke DzParametersPane::jumpToProperty()");
}

ContentLibraryPane::ContentLibraryPane(DzPane& pane) : MagicImpl<DzPane, ContentLibraryPane>(pane) {}

const std::vector<const char*>& ContentLibraryPane::Signatures()
{
    static const std::vector<const char*> signatures{"browseToAsset(DzAsset*)", "browseToCategory(QString)",
                                                     "browseToProduct(QString)"};
    return signatures;
}

std::shared_ptr<ContentLibraryPane> ContentLibraryPane::GetAndShow_X()
{
    DzPane& pane = GetContentLibraryPane_X();
    Show_X(pane);
    return std::make_shared<ContentLibraryPane>(pane);
}

std::vector<std::string> ContentLibraryPane::getSelectedAssetPaths_X() const
{
    return SelectedPaths_X(LibraryScript(), "kstContentLibraryPane_getSelectedAssetPathsOrThrow");
}

void ContentLibraryPane::browseToAsset_X(DzAsset& asset) const
{
    DzAsset* const argument = &asset;
    invoke(BrowseToAsset, Q_ARG(DzAsset*, argument));
}

void ContentLibraryPane::browseToCategory_X(std::string_view category) const
{
    const QString text = str::ToQ(category);
    invoke(BrowseToCategory, Q_ARG(QString, text));
}

void ContentLibraryPane::browseToProduct_X(std::string_view product) const
{
    const QString text = str::ToQ(product);
    invoke(BrowseToProduct, Q_ARG(QString, text));
}

SmartContentPane::SmartContentPane(DzPane& pane) : MagicImpl<DzPane, SmartContentPane>(pane) {}

const std::vector<const char*>& SmartContentPane::Signatures()
{
    static const std::vector<const char*> signatures{"setCurrentTab(int)"};
    return signatures;
}

std::shared_ptr<SmartContentPane> SmartContentPane::GetAndShow_X()
{
    DzPane& pane = GetSmartContentPane_X();
    Show_X(pane);
    return std::make_shared<SmartContentPane>(pane);
}

std::vector<std::string> SmartContentPane::getSelectedAssetPaths_X() const
{
    return SelectedPaths_X(SmartScript(), "kstSmartContentPane_getSelectedAssetPathsOrThrow");
}

void SmartContentPane::setSubTab_X(SmartContentSubTab subTab) const
{
    const int number = static_cast<int>(subTab);
    invoke(SetCurrentTab, Q_ARG(int, number));
}

/// The getter is called by whatever return type it declares, a pointer to a class that has no header.
QObject* SmartContentPane::tab_X(const char* getter) const
{
    const QMetaMethod method = FindMethodOrThrow(*object().metaObject(), getter);
    const QByteArray type = qt::ReturnTypeName(method);
    // Anything but a pointer would not fit into one.
    if (!type.endsWith('*'))
        throwCannotInvoke(method);
    QObject* tab = nullptr;
    if (!method.invoke(&object(), Qt::DirectConnection, QGenericReturnArgument(type.constData(), &tab)))
        throwCannotInvoke(method);
    return tab;
}

void SmartContentPane::browseToAssetInFilesTab_X(std::string_view category,
                                                 const std::vector<std::string>& assets) const
{
    setSubTab_X(SmartContentSubTab::Files);
    QObject* const tab = tab_X("getFileContentTab()");
    if (!tab)
        throw Exception("failed to find Files tab under Smart Content pane");
    FilesTab(*tab).select_X(category, assets);
}

void SmartContentPane::browseToProductInProductsTab_X(std::string_view category,
                                                      const std::vector<std::string>& products) const
{
    setSubTab_X(SmartContentSubTab::Products);
    QObject* const tab = tab_X("getProductContentTab()");
    if (!tab)
        throw Exception("failed to find Products tab under Smart Content pane");
    ProductsTab(*tab).select_X(category, products);
}

} // namespace daz
} // namespace kst
