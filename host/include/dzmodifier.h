// What changes an object's shape.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzelement.h"

class DzNode;
class DzObject;
class DzPresentation;

class DzModifier : public DzElement {
    Q_OBJECT
public:
    DzModifier();
    ~DzModifier();

    Q_INVOKABLE DzObject* getObject() const;
    Q_INVOKABLE DzNode* getNode() const;
    DzElement* getElementParent() const override;
    DzPresentation* getPresentation() const;
    /// Takes ownership.
    void setPresentation(DzPresentation* presentation);

signals:
    void added();
    void removed();
    void currentValueChanged();

protected:
    void renamed(const QString& oldName) override;
    void propertyValueChanged(DzProperty* property) override;
    void appendTreeMembers(QList<const DzElement*>* members) const override;

private:
    friend class DzObject;
    struct ModifierImpl;
    std::unique_ptr<ModifierImpl> _modifier;
};
