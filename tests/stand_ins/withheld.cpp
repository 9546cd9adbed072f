// What the host may hold back.
// SPDX-License-Identifier: MIT

#include "tests/stand_ins/withheld.h"

#include "dzelement.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzpropertygrouptree.h"
#include "dzscene.h"
#include "dzsettings.h"

#include <dlfcn.h>

namespace {

/// The host's own function of that symbol; a method's object is its first argument.
template <class Function>
Function* HostsOwn(const char* symbol)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, symbol));
}

QList<DzNode*> FirstOf()
{
    return withheld::firstNode ? QList<DzNode*>{nullptr} : QList<DzNode*>();
}

} // namespace

DzPropertyGroupTree* DzElement::getPropertyGroups() const
{
    static auto* const own =
        HostsOwn<DzPropertyGroupTree*(const DzElement*)>("_ZNK9DzElement17getPropertyGroupsEv");
    return withheld::propertyGroups ? nullptr : own(this);
}

DzModifier* DzObject::getModifier(int index) const
{
    static auto* const own = HostsOwn<DzModifier*(const DzObject*, int)>("_ZNK8DzObject11getModifierEi");
    return withheld::firstModifier && index == 0 ? nullptr : own(this, index);
}

DzNodeListIterator DzScene::nodeListIterator() const
{
    QList<DzNode*> nodes = FirstOf();
    for (int i = 0; i < getNumNodes(); ++i)
        nodes.append(getNode(i));
    return DzNodeListIterator(nodes);
}

DzNodeListIterator DzScene::selectedNodeListIterator() const
{
    QList<DzNode*> nodes = FirstOf();
    for (int i = 0; i < getNumSelectedNodes(); ++i)
        nodes.append(getSelectedNode(i));
    return DzNodeListIterator(nodes);
}

DzSettings* DzSettings::setSettingsValue(const QString& key)
{
    static auto* const own =
        HostsOwn<DzSettings*(DzSettings*, const QString&)>("_ZN10DzSettings16setSettingsValueERK7QString");
    return withheld::nestedOptions ? nullptr : own(this, key);
}
