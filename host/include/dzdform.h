// D-Formers.
// SPDX-License-Identifier: MIT

#pragma once

#include "dznode.h"

class DzDFormBase;
class DzDFormModifier;
class DzDFormZone;

/// Three nodes (former, base, zone) and one modifier on each object that it acts on. When the former leaves
/// the scene, its modifiers go too.
class DzDForm : public DzNode {
    Q_OBJECT
public:
    DzDForm();
    ~DzDForm();

    DzDFormBase* getBase() const { return _base; }
    void setBase(DzDFormBase* base);
    DzDFormZone* getZone() const { return _zone; }
    void setZone(DzDFormZone* zone);

    int getNumModifiers() const;
    DzDFormModifier* getModifier(int index) const;
    DzDFormModifier* getModifierForNode(const DzNode* node) const;
    /// Adds a modifier named after this former to the node's object; the one there already is kept.
    /// Null for a node without an object.
    DzDFormModifier* applyToNode(DzNode* node);

protected:
    void leftScene() override;

private slots:
    void handleNodeDestroyed(QObject* node);
    void handlePartChanged();

private:
    friend class DzDFormModifier;
    DzDFormBase* _base;
    DzDFormZone* _zone;
    QList<DzDFormModifier*> _modifiers;
};
