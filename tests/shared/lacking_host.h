// Classes of a host that lacks methods.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QStringList>

class DzNode;

namespace lacking {

class NoMethods : public QObject {
    Q_OBJECT
};

/// A Transfer Utility with all methods but the last.
class NoDoTransfer : public QObject {
    Q_OBJECT
public:
    static int calls;

    Q_INVOKABLE bool setSource(DzNode*) { return ++calls > 0; }
    Q_INVOKABLE bool setTarget(DzNode*) { return ++calls > 0; }
    Q_INVOKABLE bool setTransferMorphs(bool) { return ++calls > 0; }
    Q_INVOKABLE bool setTransferSourceMorphs(int) { return ++calls > 0; }
    Q_INVOKABLE bool setOverrideExistingMorphs(bool) { return ++calls > 0; }
    Q_INVOKABLE bool setTransferBinding(bool) { return ++calls > 0; }
    Q_INVOKABLE bool setTransferSelectionMap(bool) { return ++calls > 0; }
    Q_INVOKABLE bool setTransferFaceGroups(bool) { return ++calls > 0; }
    Q_INVOKABLE bool setTransferRegionGroups(bool) { return ++calls > 0; }
    Q_INVOKABLE bool setTargetReplacesSource(bool) { return ++calls > 0; }
    Q_INVOKABLE bool setParentToFigure(bool) { return ++calls > 0; }
    Q_INVOKABLE bool setMorphTransferList(const QStringList&) { return ++calls > 0; }
};

inline int NoDoTransfer::calls = 0;

} // namespace lacking
