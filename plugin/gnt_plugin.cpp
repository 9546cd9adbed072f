// What the host learns when it loads the module: who made it, and which actions it brings.
// SPDX-License-Identifier: MIT

// The host's macros may hand their plain texts straight to the toolkit's strings. Ours here are plain ASCII,
// or turned before.
#undef QT_NO_CAST_FROM_ASCII

#include "gnt_actions.h"
#include "ks_product.h"

#include <QString>

#include <dzplugin.h>

#if defined(__clang__)
// The host looks these entry points up by their plain names, and has them return a class.
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif

// Some of the host's macros end with their semicolon and some want one: another does no harm. A bare name
// would declare a function where a macro wraps it into a string.
DZ_PLUGIN_DEFINITION(kst::product::TITLE + 0);
DZ_PLUGIN_AUTHOR("Kestrom");
DZ_PLUGIN_VERSION(GNT_MAJOR, GNT_MINOR, GNT_REVISION, 0);
// The description's quotation marks around the menu's name are typographic ones.
DZ_PLUGIN_DESCRIPTION(QString::fromUtf8(
    "\n<p>Gantrel for Genesis 9 is a plugin for Daz Studio 4.20 and above that can convert Genesis 3, 8 and "
    "8.1 Genesis shapes to Genesis 9.</p>\n<p>By default it can be launched either with the menu item in the "
    "new \xE2\x80\x9C"
    "Convert\xE2\x80\x9D menu or with the Ctrl + Alt + C keyboard shortcut.</p>"));

// The bare identifiers become text as they stand here, blanks and all.
// clang-format off
// Saved menus and shortcuts refer to these identifiers: they never change.
DZ_PLUGIN_CLASS_GUID(GntConvertFigureAction, 6d0c1f0e-43b7-4c6a-9d5e-1b7f2c9a8e41);
DZ_PLUGIN_CLASS_GUID(GntOpenManualAction, b2f4a7d3-0e96-4f18-8a3c-57d1e6c0f924);
// clang-format on
