// What drives a property.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

class DzProperty;

/// Owned by the property that it drives.
class DzController : public DzBase {
    Q_OBJECT
    Q_PROPERTY(bool active READ isActive WRITE setActive)
    Q_PROPERTY(bool isUserLink READ isUserLink WRITE setIsUserLink)
    Q_PROPERTY(bool autoOverride READ getAutoOverride WRITE setAutoOverride)
    Q_PROPERTY(bool saveWithOutput READ getSaveWithOutput WRITE setSaveWithOutput)
public:
    DzController();
    ~DzController();

    Q_INVOKABLE DzProperty* getOwner() const { return _owner; }
    bool isActive() const { return _active; }
    void setActive(bool onOff);
    bool isUserLink() const { return _userLink; }
    void setIsUserLink(bool onOff) { _userLink = onOff; }
    bool getAutoOverride() const { return _autoOverride; }
    void setAutoOverride(bool onOff) { _autoOverride = onOff; }
    bool getSaveWithOutput() const { return _saveWithOutput; }
    void setSaveWithOutput(bool onOff) { _saveWithOutput = onOff; }

protected:
    /// The driven property is to be evaluated again.
    void changed();

private:
    friend class DzProperty;
    /// A property that drives this controller is about to go.
    virtual void inputDeleted(DzProperty* input);

    DzProperty* _owner;
    bool _active;
    bool _userLink;
    bool _autoOverride;
    bool _saveWithOutput;
};
