// The host's plug-in definitions, whose macros hand plain texts on as they are. Such macros may want a
// semicolon or end with their own: MACROS_HAVE_SEMICOLONS chooses; MACROS_WRAP_TEXTS lets them make strings.
// SPDX-License-Identifier: MIT

#pragma once

#include "../../../host/include/dzplugin.h"

#ifdef MACROS_HAVE_SEMICOLONS
#define END_OF_MACRO ;
#else
#define END_OF_MACRO
#endif

#ifdef MACROS_WRAP_TEXTS
#define PLUGIN_TEXT(text) QString(text)
#else
#define PLUGIN_TEXT(text) text
#endif

#undef DZ_PLUGIN_DEFINITION
#undef DZ_PLUGIN_AUTHOR
#undef DZ_PLUGIN_VERSION
#undef DZ_PLUGIN_DESCRIPTION
#undef DZ_PLUGIN_CLASS_GUID

// clang-format off
#define DZ_PLUGIN_DEFINITION(pluginName)                                                                     \
    static DzPlugin s_pluginDef(PLUGIN_TEXT(pluginName));                                                    \
    extern "C" Q_DECL_EXPORT DzVersion getSDKVersion()                                                       \
    {                                                                                                        \
        return DZ_SDK_VERSION;                                                                               \
    }                                                                                                        \
    extern "C" Q_DECL_EXPORT DzPlugin* getPluginDefinition()                                                 \
    {                                                                                                        \
        return &s_pluginDef;                                                                                 \
    }                                                                                                        \
    static const bool s_isDefined = (s_pluginDef.getStatus(), true) END_OF_MACRO

#define DZ_PLUGIN_AUTHOR(author)                                                                             \
    static const bool s_hasAuthor = s_isDefined && (s_pluginDef.setAuthor(author), true) END_OF_MACRO

#define DZ_PLUGIN_VERSION(major, minor, revision, build)                                                     \
    static const bool s_hasVersion =                                                                         \
        s_hasAuthor && (s_pluginDef.setVersion(major, minor, revision, build), true) END_OF_MACRO

#define DZ_PLUGIN_DESCRIPTION(description)                                                                   \
    static const bool s_hasDescription =                                                                     \
        s_hasVersion && (s_pluginDef.setDescription(description), true) END_OF_MACRO

#define DZ_PLUGIN_CLASS_GUID(typeName, guid)                                                                 \
    static const bool s_has##typeName =                                                                      \
        s_hasDescription && (DzGuid::fromString(QLatin1String("{" #guid "}")),                               \
                             typeName::staticMetaObject.className() != nullptr) END_OF_MACRO
// clang-format on
