// What all properties have in common.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"
#include "dzlistiterator.h"
#include "dztime.h"

#include <memory>
#include <vector>

template <class T>
class QSet;

class DzController;
class DzElement;
class DzPresentation;
class DzProperty;
class DzPropertyGroup;

namespace openhost {
void DropLink(DzController& link);
void CutOff(const std::vector<DzProperty*>& leaving);
} // namespace openhost

typedef DzTListIterator<DzController> DzControllerListIterator;

/// A value of an element that users and other properties can drive.
class DzProperty : public DzBase {
    Q_OBJECT
public:
    DzProperty(const QString& name, bool canAnimate, bool isUserProperty);
    ~DzProperty();

    /// The user's text; the name as long as no label has been set.
    Q_INVOKABLE QString getLabel() const;
    Q_INVOKABLE void setLabel(const QString& label);
    Q_INVOKABLE DzElement* getOwner() const; ///< null until added to an element

    /// The group in which the property is shown: begins with '/', no slash at the end.
    Q_INVOKABLE QString getPath() const;
    Q_INVOKABLE void setPath(const QString& path);
    /// The path without its region, which here is never part of it.
    Q_INVOKABLE QString getGroupOnlyPath() const;
    QString getRegion() const;
    void setRegion(const QString& region);
    DzPropertyGroup* getGroup() const; ///< null without owner

    Q_INVOKABLE bool isHidden() const;
    Q_INVOKABLE void setHidden(bool onOff);
    Q_INVOKABLE bool isLocked() const;
    /// A locked property refuses new values.
    Q_INVOKABLE void lock(bool onOff);
    Q_INVOKABLE bool isFavorite() const;
    Q_INVOKABLE void setIsFavorite(bool onOff);
    Q_INVOKABLE bool isUserProperty() const;
    void setIsUserProperty(bool onOff);
    Q_INVOKABLE bool isPrivate() const;
    Q_INVOKABLE bool canAnimate() const;
    void setCanAnimate(bool onOff);
    bool canAutoFollow() const;
    void setCanAutoFollow(bool onOff);
    bool isManipulator() const;
    void setIsManipulator(bool onOff);

    void beginEdit();
    void finishEdit();
    void cancelEdit();

    /// Links that drive this property, in the order in which they are applied.
    Q_INVOKABLE int getNumControllers() const;
    Q_INVOKABLE DzController* getController(int index) const;
    bool hasControllers() const;
    DzControllerListIterator controllerListIterator() const;
    /// Links elsewhere that this property drives.
    Q_INVOKABLE int getNumSlaveControllers() const;
    bool hasSlaveControllers() const;
    DzControllerListIterator slaveControllerListIterator() const;
    void setOverrideControllers(bool onOff);
    bool isOverridingControllers() const;

    /// Properties that show and set this one's value.
    Q_INVOKABLE int getNumAliases() const;
    Q_INVOKABLE DzProperty* getAlias(int index) const;
    Q_INVOKABLE DzProperty* getAliasTarget() const;
    /// Makes this a second dial for the target's value; null ends it. False for itself or a cycle.
    bool setAliasTarget(DzProperty* target);

    DzPresentation* getPresentation() const;
    /// Takes ownership.
    void setPresentation(DzPresentation* presentation);

signals:
    void currentValueChanged();
    void removed();
    void valueChanged(const DzTimeRange& range);
    void labelChanged(const QString& label);
    void pathChanged(const QString& path);
    void lockStateChanged();
    void hiddenChanged(bool hidden);
    void propertyDeleted(DzProperty* property);
    void controllerListChanged();

protected:
    void renamed(const QString& oldName) override;
    /// The controllers or the alias target have changed; the value is to be evaluated again.
    virtual void inputsChanged();
    /// Tells the owner and emits currentValueChanged.
    void announceChange();

    const QList<DzController*>& controllers() const;
    const QList<DzController*>& slaveControllers() const;
    const QList<DzProperty*>& aliases() const;
    void insertControllerAt(DzController* controller, int index);
    /// Deletes the controllers that this property drives; to be called first in a destructor that they may
    /// call.
    void dropDependants();

private:
    friend void openhost::DropLink(DzController& link);
    friend void openhost::CutOff(const std::vector<DzProperty*>& leaving);
    friend class DzElement;
    friend class DzController;
    friend class DzNumericController;
    void setOwner(DzElement* owner, bool isPrivate);
    void addSlaveController(DzController* controller);
    void removeSlaveController(DzController* controller);
    void removeController(DzController* controller);
    /// Ends a link, which is kept where that may be taken back.
    static void drop(DzController& link);
    /// Ends what ties this property to others than those.
    void cutOff(const QSet<DzProperty*>& leaving);

    struct Impl;
    std::unique_ptr<Impl> _impl;
};
