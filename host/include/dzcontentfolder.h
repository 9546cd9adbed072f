// Mapped content folders.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

class DzContentFolder : public DzBase {
    Q_OBJECT
    Q_PROPERTY(QString fullPath READ getFullPath)
public:
    explicit DzContentFolder(const QString& fullPath);
    ~DzContentFolder();

    QString getFullPath() const { return _fullPath; }

private:
    QString _fullPath;
};
