// Writing files of other formats.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzerror.h"
#include "dzfileio.h"

class DzExporter : public DzFileIO {
    Q_OBJECT
public:
    explicit DzExporter(const QString& extension);
    ~DzExporter();

    /// Asks for the options first, where there is somebody to ask, unless "RunSilent" is set in them.
    Q_INVOKABLE DzError writeFile(const QString& filename, const DzFileIOSettings* options = 0);
    QString getExtension() const { return _extension; }
    virtual bool isFileExporter() const;

protected:
    virtual DzError write(const QString& filename, const DzFileIOSettings* options) = 0;

private:
    QString _extension;
};
