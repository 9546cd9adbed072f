// The host's OBJ importer.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzimporter.h"

/// Reads a file into one prop labelled after the file's stem, which becomes the selection.
class DzObjImporter : public DzImporter {
    Q_OBJECT

public:
    QString getDescription() const override;
    void getDefaultOptions(DzFileIOSettings* options) const override;
    bool getOptions(DzFileIOSettings* options, bool useInterface, const QString& filename) override;
    int getNumExtensions() const override { return 1; }
    QString getExtension(int index) const override;

protected:
    DzError read(const QString& filename, const DzFileIOSettings* options) override;
};
