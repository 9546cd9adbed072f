// The host's Parameters, Content Library and Smart Content panes.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_qt-magic.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class DzAsset;
class DzPane;
class DzProperty;

namespace kst {
namespace daz {

/// Wrappers borrow the host's pane, which must live longer. What is said to throw throws kst::Exception; so
/// do all functions when a pane or a manager is missing (see ks_daz-managers.h), and "failed to invoke
/// {}::{}" for a method that cannot be called.
class ParametersPane : public qt::MagicImpl<DzPane, ParametersPane> {
public:
    explicit ParametersPane(DzPane& pane);

    /// Shows the pane, and in it the property.
    /// @throws Exception  "failed to invoke DzParametersPane::jumpToProperty()"
    static void JumpToProperty_X(DzProperty& property);

    static const std::vector<const char*>& Signatures();

private:
    bool jumpToProperty(DzProperty& property) const;
};

class ContentLibraryPane : public qt::MagicImpl<DzPane, ContentLibraryPane> {
public:
    explicit ContentLibraryPane(DzPane& pane);

    static std::shared_ptr<ContentLibraryPane> GetAndShow_X();

    /// The local files of the selected assets, in the pane's order. A path that contains ":::" comes in
    /// pieces.
    /// @throws Exception  "failed to execute script to get selected assets", or a text that begins with
    /// "Script error: "
    std::vector<std::string> getSelectedAssetPaths_X() const;
    /// Shows the asset's folder, and selects the asset.
    void browseToAsset_X(DzAsset& asset) const;
    /// @param category  a folder's path below its content directory
    void browseToCategory_X(std::string_view category) const;
    /// @param product  its name
    void browseToProduct_X(std::string_view product) const;

    static const std::vector<const char*>& Signatures();
};

/// By the host's numbers.
enum class SmartContentSubTab : int { Files = 0, Products = 1 };

class SmartContentPane : public qt::MagicImpl<DzPane, SmartContentPane> {
public:
    explicit SmartContentPane(DzPane& pane);

    static std::shared_ptr<SmartContentPane> GetAndShow_X();

    /// The local files of the assets that are selected in the files tab, in its order. A path that contains
    /// ":::" comes in pieces.
    /// @throws Exception  as ContentLibraryPane::getSelectedAssetPaths_X
    std::vector<std::string> getSelectedAssetPaths_X() const;
    void setSubTab_X(SmartContentSubTab subTab) const;
    /// Turns to the files tab, and selects assets there.
    /// @param category  a folder's path below its content directory; empty for any
    /// @param assets    their paths or names
    /// @throws Exception  "failed to find Files tab under Smart Content pane"
    void browseToAssetInFilesTab_X(std::string_view category, const std::vector<std::string>& assets) const;
    /// Turns to the products tab, and selects products there.
    /// @param category  the folder that they are in; empty for any
    /// @param products  their names
    /// @throws Exception  "failed to find Products tab under Smart Content pane"
    void browseToProductInProductsTab_X(std::string_view category,
                                        const std::vector<std::string>& products) const;

    static const std::vector<const char*>& Signatures();

private:
    QObject* tab_X(const char* getter) const;
};

} // namespace daz
} // namespace kst
