// The host's managers, each returned or missed with its fixed message.
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

class DzAction;
class DzActionMgr;
class DzAssetIOMgr;
class DzAssetMgr;
class DzContentMgr;
class DzExporter;
class DzImporter;
class DzMainWindow;

/// Managers are the host's and are borrowed; all throw kst::Exception where one is missing and the flag, if
/// any, is set.
namespace kst {
namespace daz {

DzMainWindow* GetMainWindow(bool throwIfMissing);
DzContentMgr& GetContentMgr_X();
DzAssetMgr& GetAssetMgr_X();
DzAssetIOMgr& GetAssetIOMgr_X();
DzExporter& GetObjExporter_X(); ///< a new exporter; the caller deletes it
DzImporter& GetObjImporter_X(); ///< a new importer; the caller deletes it
DzActionMgr* GetActionMgr(bool throwIfMissing);
DzAction* FindActionOrThrow(const char* className, bool throwIfMissing);

/// The host's add-on that lets Morph Loader Pro make subdivided morphs is there, active and without error.
bool IsHdMorphPluginPresent();

} // namespace daz
} // namespace kst
