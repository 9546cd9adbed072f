// The metadata database.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

/// Assets are found through the content directories here, so there is no database to connect to.
class DzAssetMgr : public QObject {
    Q_OBJECT
public:
    DzAssetMgr();
    ~DzAssetMgr();

    Q_INVOKABLE bool isConnected() const { return false; }
};
