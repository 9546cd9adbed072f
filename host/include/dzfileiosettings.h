// Options of exporters, importers and savers.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzsettings.h"

class DzFileIOSettings : public DzSettings {
    Q_OBJECT
public:
    DzFileIOSettings();
    DzFileIOSettings(const DzFileIOSettings& other);
    DzFileIOSettings& operator=(const DzFileIOSettings& other) = default;
    ~DzFileIOSettings();
};
