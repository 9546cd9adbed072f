// Clothes and other parts that move with the figure they are fitted to.
// SPDX-License-Identifier: MIT

#include "figure/fitting.h"

#include "dzbone.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dznumericcontroller.h"
#include "dzobject.h"
#include "dzskeleton.h"

#include <QPointer>

namespace openhost {

namespace {

enum class FollowBy { Difference, RawDifference, Factor };

/// Passes on what the followed property has more than its default.
class FollowController : public DzNumericController {
public:
    FollowController(FollowBy by, DzNumericProperty& followed, DzSkeleton& follower, DzSkeleton& target)
        : _by(by), _follower(&follower), _target(&target)
    {
        setInputs({&followed});
        setSaveWithOutput(false);
    }

    double apply(double value, const DzTime&, bool) const override
    {
        return isMultiplying() ? value * surplus() : value + surplus();
    }

    double applyInverse(double value, const DzTime&, bool) const override
    {
        if (!isMultiplying())
            return value - surplus();
        return surplus() == 0.0 ? value : value / surplus();
    }

    bool isMultiplying() const override { return _by == FollowBy::Factor; }

    bool follows(const DzNumericProperty& followed) const
    {
        return getNumInputs() > 0 && getInput(0) == &followed;
    }

private:
    double surplus() const
    {
        const double neutral = isMultiplying() ? 1.0 : 0.0;
        const bool isFitted = _follower && _target && _follower->getFollowTarget() == _target;
        if (!isFitted || getNumInputs() == 0)
            return neutral;
        const DzNumericProperty& followed = *getInput(0);
        const double rest = followed.getDoubleDefaultValue();
        if (_by == FollowBy::RawDifference)
            return followed.getDoubleRawValue() - rest;
        if (_by == FollowBy::Difference)
            return inputValue(followed) - rest;
        return rest == 0.0 ? neutral : inputValue(followed) / rest;
    }

    FollowBy _by;
    QPointer<DzSkeleton> _follower, _target;
};

DzNumericProperty* FindChannel(const DzNode& node, const QString& name)
{
    DzProperty* const property = node.findProperty(name);
    return qobject_cast<DzNumericProperty*>(property ? property : node.findPrivateProperty(name));
}

DzNumericProperty* FindDial(const DzNode& node, const QString& name)
{
    if (const DzObject* const object = node.getObject())
        if (auto* const morph = qobject_cast<DzMorph*>(object->findModifier(name)))
            return morph->getValueControl();
    return qobject_cast<DzNumericProperty*>(node.findProperty(name));
}

/// What an earlier fit has left, or a figure that is fitted to the same one again would follow twice.
void Forget(DzNumericProperty& property)
{
    for (int i = property.getNumControllers(); i-- > 0;)
        if (auto* const controller = dynamic_cast<FollowController*>(property.getController(i)))
            property.deleteController(controller);
}

void ForgetAll(const DzElement& element)
{
    for (int i = 0; i < element.getNumProperties(); ++i)
        if (auto* const property = qobject_cast<DzNumericProperty*>(element.getProperty(i)))
            Forget(*property);
    for (int i = 0; i < element.getNumPrivateProperties(); ++i)
        if (auto* const property = qobject_cast<DzNumericProperty*>(element.getPrivateProperty(i)))
            Forget(*property);
}

void ForgetAll(const DzSkeleton& follower)
{
    ForgetAll(static_cast<const DzElement&>(follower));
    for (const DzBone* const bone : follower.bones())
        ForgetAll(static_cast<const DzElement&>(*bone));
    if (const DzObject* const object = follower.getObject())
        for (int i = 0; i < object->getNumModifiers(); ++i)
            ForgetAll(static_cast<const DzElement&>(*object->getModifier(i)));
}

struct Fit {
    DzSkeleton& follower;
    DzSkeleton& target;

    void follow(DzNumericProperty& own, DzNumericProperty& followed, FollowBy by) const
    {
        own.insertController(new FollowController(by, followed, follower, target));
    }

    void followChannel(const DzNode& bone, const DzNode& other, const QString& name, FollowBy by) const
    {
        DzNumericProperty* const own = FindChannel(bone, name);
        DzNumericProperty* const followed = FindChannel(other, name);
        if (own && followed)
            follow(*own, *followed, by);
    }

    /// A part with shapes of its own may shift its joints itself.
    void followJoint(const DzNode& bone, const DzNode& other, const QString& name) const
    {
        const DzNumericProperty* const own = FindChannel(bone, name);
        if (own && !own->hasControllers())
            followChannel(bone, other, name, FollowBy::Difference);
    }

    void followNode(const DzNode& bone, const DzNode& other) const
    {
        for (const char axis : {'X', 'Y', 'Z'}) {
            const QString letter = QChar::fromLatin1(axis);
            followChannel(bone, other, letter + QLatin1String("Translate"), FollowBy::Difference);
            followChannel(bone, other, letter + QLatin1String("Rotate"), FollowBy::Difference);
            followChannel(bone, other, letter + QLatin1String("Scale"), FollowBy::Factor);
            for (const char* const joint : {"Origin", "End", "Orientation"})
                followJoint(bone, other, letter + QLatin1String(joint));
        }
        followChannel(bone, other, QStringLiteral("Scale"), FollowBy::Factor);
    }

    /// Where the follower has links of its own they give what links give the followed dial.
    void followDial(DzNumericProperty& own, const QString& name) const
    {
        DzNumericProperty* const followed = FindDial(target, name);
        if (followed && followed->canAutoFollow())
            follow(own, *followed, own.hasControllers() ? FollowBy::RawDifference : FollowBy::Difference);
    }

    void followDials() const
    {
        if (const DzObject* const object = follower.getObject())
            for (int i = 0; i < object->getNumModifiers(); ++i)
                if (auto* const morph = qobject_cast<DzMorph*>(object->getModifier(i)))
                    followDial(*morph->getValueControl(), morph->getName());
        for (int i = 0; i < follower.getNumProperties(); ++i) {
            if (auto* const dial = qobject_cast<DzNumericProperty*>(follower.getProperty(i)))
                followDial(*dial, dial->getName());
        }
    }
};

} // namespace

bool IsBelow(const DzNode& node, const DzNode& above)
{
    const DzNode* next = &node;
    while (next && next != &above)
        next = next->getNodeParent();
    return next;
}

void FitTo(DzSkeleton& follower, DzSkeleton& target)
{
    if (follower.getFollowTarget() == &target)
        return;
    ForgetAll(follower);
    follower.setFollowTarget(&target);
    const Fit fit{follower, target};
    if (!IsBelow(follower, target))
        fit.followNode(follower, target);
    for (const DzBone* const bone : follower.bones())
        if (const DzBone* const other = target.findBone(bone->getName()))
            fit.followNode(*bone, *other);
    fit.followDials();
}

bool HasDialFor(const DzSkeleton& follower, const DzMorph& morph)
{
    const DzNumericProperty* const own = FindDial(follower, morph.getName());
    const DzNumericProperty& followed = *morph.getValueControl();
    if (!own || !followed.canAutoFollow())
        return own;
    // One that has come after the fit follows nothing, and stands for nothing then.
    for (int i = 0; i < own->getNumControllers(); ++i) {
        const auto* const controller = dynamic_cast<const FollowController*>(own->getController(i));
        if (controller && controller->follows(followed))
            return true;
    }
    return false;
}

} // namespace openhost
