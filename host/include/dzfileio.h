// What exporters, importers and savers have in common.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

class DzFileIOSettings;

class DzFileIO : public DzBase {
    Q_OBJECT
public:
    DzFileIO();
    ~DzFileIO();

    Q_INVOKABLE virtual QString getDescription() const;
    Q_INVOKABLE virtual void getDefaultOptions(DzFileIOSettings* options) const;
    /// Fills in what is missing from the defaults; asks when the interface is to be used and there is one.
    /// False when the user cancels.
    Q_INVOKABLE virtual bool getOptions(DzFileIOSettings* options, bool useInterface,
                                        const QString& filename);
    virtual bool showOptions() const;
};
