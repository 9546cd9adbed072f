// Base shapes of an object.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzelement.h"

class DzGeometry;
class DzNode;
class DzObject;

class DzShape : public DzElement {
    Q_OBJECT
public:
    DzShape();
    ~DzShape();

    /// The base mesh: local space, unmorphed.
    Q_INVOKABLE virtual DzGeometry* getGeometry() const;
    /// The base mesh with what is grafted onto it.
    virtual DzGeometry* getAssemblyGeometry() const;
    Q_INVOKABLE DzNode* getNode() const;
    Q_INVOKABLE DzObject* getObject() const { return _object; }
    DzElement* getElementParent() const override;

private:
    friend class DzObject;
    DzObject* _object;
};
