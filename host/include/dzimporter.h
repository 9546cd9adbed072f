// Reading files of other formats.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzerror.h"
#include "dzfileio.h"
#include "dzlistiterator.h"

#include <QStringList>

class DzNode;

class DzImporter : public DzFileIO {
    Q_OBJECT
public:
    DzImporter();
    ~DzImporter();

    /// Asks for the options first, where there is somebody to ask, unless "RunSilent" is set in them.
    Q_INVOKABLE DzError readFile(const QString& filename, const DzFileIOSettings* options = 0);
    virtual bool recognize(const QString& filename) const;
    virtual int getNumExtensions() const = 0;
    virtual QString getExtension(int index) const = 0;
    /// Of the last read; nodes deleted since are left out.
    int getNumImportedNodes() const;
    DzNode* getImportedNode(int index) const;

protected:
    virtual DzError read(const QString& filename, const DzFileIOSettings* options) = 0;
    void addImportedNode(DzNode* node);

private slots:
    void handleNodeDestroyed(QObject* node);

private:
    QList<QObject*> _nodes;
};
