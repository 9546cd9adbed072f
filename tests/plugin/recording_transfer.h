// A Transfer Utility that transfers nothing and notes what it is asked for.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

#include <QObject>
#include <QStringList>

#include <dznode.h>

class RecordingTransfer : public QObject {
    Q_OBJECT
public:
    static std::string calls;

    Q_INVOKABLE bool setSource(DzNode* node) { return note("source", node->getLabel()); }
    Q_INVOKABLE bool setTarget(DzNode* node) { return note("target", node->getLabel()); }
    Q_INVOKABLE bool setTransferMorphs(bool on) { return note("morphs", on); }
    Q_INVOKABLE bool setTransferSourceMorphs(int type) { return note("type", QString::number(type)); }
    Q_INVOKABLE bool setOverrideExistingMorphs(bool on) { return note("override", on); }
    Q_INVOKABLE bool setTransferBinding(bool on) { return note("binding", on); }
    Q_INVOKABLE bool setTransferSelectionMap(bool on) { return note("selection map", on); }
    Q_INVOKABLE bool setTransferFaceGroups(bool on) { return note("face groups", on); }
    Q_INVOKABLE bool setTransferRegionGroups(bool on) { return note("region groups", on); }
    Q_INVOKABLE bool setTargetReplacesSource(bool on) { return note("replaces source", on); }
    Q_INVOKABLE bool setParentToFigure(bool on) { return note("parent", on); }
    Q_INVOKABLE bool setMorphTransferList(const QStringList& names)
    {
        return note("list", names.join(QLatin1Char('+')));
    }
    Q_INVOKABLE bool doTransfer() { return note("transfer", true); }

private:
    static bool note(const char* what, bool on)
    {
        return note(what, QString(QLatin1String(on ? "yes" : "no")));
    }
    static bool note(const char* what, const QString& value)
    {
        calls += (calls.empty() ? "" : ", ") + std::string(what) + ' ' + value.toStdString();
        return true;
    }
};

inline std::string RecordingTransfer::calls;
