// What files say of nodes and their modifiers that nothing in the scene stands for.
// SPDX-License-Identifier: MIT

#include "loading/kept_parts.h"

#include "dzbonebinding.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzskinbinding.h"

#include <utility>

namespace openhost {

namespace {

/// Goes with its owner.
template <class Kept>
class Holder : public QObject {
public:
    Holder(QObject& owner, Kept held) : QObject(&owner), kept(std::move(held)) {}
    const Kept kept;
};

template <class Kept>
const Kept* HeldBy(const QObject& owner)
{
    for (const QObject* const child : owner.children())
        if (const auto* const holder = dynamic_cast<const Holder<Kept>*>(child))
            return &holder->kept;
    return nullptr;
}

} // namespace

// Of several instances of one thing the first counts.

void Keep(DzNode& owner, KeptNode kept)
{
    if (!HeldBy<KeptNode>(owner))
        new Holder<KeptNode>(owner, std::move(kept));
}

void Keep(QObject& owner, KeptModifier kept)
{
    if (!HeldBy<KeptModifier>(owner))
        new Holder<KeptModifier>(owner, std::move(kept));
}

void Keep(DzBoneBinding& owner, KeptJoint kept)
{
    new Holder<KeptJoint>(owner, std::move(kept));
}

void Keep(DzSkinBinding& owner, dson::SkinBinding::Normalizing kept)
{
    new Holder<dson::SkinBinding::Normalizing>(owner, kept);
}

const KeptNode* KeptOfNode(const DzNode& node)
{
    return HeldBy<KeptNode>(node);
}

const KeptModifier* KeptOfModifier(const QObject& owner)
{
    return HeldBy<KeptModifier>(owner);
}

const KeptJoint* KeptOfJoint(const DzBoneBinding& owner)
{
    return HeldBy<KeptJoint>(owner);
}

const dson::SkinBinding::Normalizing* KeptOfSkin(const DzSkinBinding& owner)
{
    return HeldBy<dson::SkinBinding::Normalizing>(owner);
}

} // namespace openhost
