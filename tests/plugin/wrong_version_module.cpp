// A module made for another host.
// SPDX-License-Identifier: MIT

#include "dzplugin.h"

static DzPlugin g_plugin(QStringLiteral("Wrong"));

extern "C" Q_DECL_EXPORT DzVersion getSDKVersion()
{
    return DzVersion(3, 1, 2, 26);
}

extern "C" Q_DECL_EXPORT DzPlugin* getPluginDefinition()
{
    return &g_plugin;
}
