// The group tree of an element's properties.
// SPDX-License-Identifier: MIT

#include "dzpropertygroup.h"
#include "dzpropertygrouptree.h"

#include "dzproperty.h"

DzPropertyGroup::DzPropertyGroup(const QString& name, DzPropertyGroup* parent,
                                 const DzPropertyGroupTree* tree)
    : _tree(tree), _parent(parent), _indexInParent(parent ? parent->_children.size() : 0)
{
    setName(name);
    if (parent)
        parent->_children.append(this);
}

DzPropertyGroup::~DzPropertyGroup()
{
    qDeleteAll(_children);
}

DzPropertyGroup* DzPropertyGroup::getFirstChild() const
{
    _tree->refresh();
    return _children.isEmpty() ? nullptr : _children.first();
}

DzPropertyGroup* DzPropertyGroup::getNextSibling() const
{
    if (!_parent || _indexInParent + 1 >= _parent->_children.size())
        return nullptr;
    return _parent->_children.at(_indexInParent + 1);
}

// The tree's nameless root is no group for callers.
DzPropertyGroup* DzPropertyGroup::getParent() const
{
    return _parent && _parent->_parent ? _parent : nullptr;
}

QString DzPropertyGroup::getPath() const
{
    return _parent ? _parent->getPath() + QLatin1Char('/') + getName() : QString();
}

int DzPropertyGroup::getNumProperties() const
{
    _tree->refresh();
    return _properties.size();
}

DzProperty* DzPropertyGroup::getProperty(int index) const
{
    return index >= 0 && index < getNumProperties() ? _properties.at(index) : nullptr;
}

DzPropertyListIterator DzPropertyGroup::getProperties() const
{
    _tree->refresh();
    return DzPropertyListIterator(_properties);
}

QStringList DzPropertyGroup::getAllPaths() const
{
    QStringList paths;
    if (_parent)
        paths.append(getPath());
    for (const DzPropertyGroup* group = getFirstChild(); group; group = group->getNextSibling())
        paths += group->getAllPaths();
    return paths;
}

DzPropertyGroup* DzPropertyGroup::child(const QString& name)
{
    for (DzPropertyGroup* group : std::as_const(_children)) {
        if (group->getName() == name)
            return group;
    }
    return new DzPropertyGroup(name, this, _tree);
}

DzPropertyGroupTree::DzPropertyGroupTree(const DzElement* owner, bool isPrivate)
    : _owner(owner), _isPrivate(isPrivate), _stale(true), _root(new DzPropertyGroup(QString(), nullptr, this))
{
}

DzPropertyGroupTree::~DzPropertyGroupTree() = default;

DzPropertyGroup* DzPropertyGroupTree::getFirstChild() const
{
    refresh();
    return _root->getFirstChild();
}

DzPropertyGroup* DzPropertyGroupTree::findChild(const QString& path) const
{
    refresh();
    DzPropertyGroup* group = _root.get();
    for (const QString& name : path.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        DzPropertyGroup* next = group->getFirstChild();
        while (next && next->getName() != name)
            next = next->getNextSibling();
        if (!next)
            return nullptr;
        group = next;
    }
    return group == _root.get() ? nullptr : group;
}

DzPropertyGroup* DzPropertyGroupTree::getDefaultGroup() const
{
    refresh();
    return _root->child(QStringLiteral("General"));
}

QStringList DzPropertyGroupTree::getAllPaths() const
{
    refresh();
    return _root->getAllPaths();
}

namespace {

void CollectProperties(const DzPropertyGroup& group, QObjectList* all)
{
    for (int i = 0; i < group.getNumProperties(); ++i)
        all->append(group.getProperty(i));
    for (const DzPropertyGroup* child = group.getFirstChild(); child; child = child->getNextSibling())
        CollectProperties(*child, all);
}

} // namespace

QObjectList DzPropertyGroupTree::getAllProperties() const
{
    refresh();
    QObjectList all;
    CollectProperties(*_root, &all);
    return all;
}

DzProperty* DzPropertyGroupTree::findProperty(const QString& name) const
{
    for (QObject* object : getAllProperties()) {
        DzProperty* const property = static_cast<DzProperty*>(object);
        if (property->getName() == name)
            return property;
    }
    return nullptr;
}

void DzPropertyGroupTree::invalidate()
{
    if (_stale)
        return;
    _stale = true;
    emit treeChanged();
}

namespace {

template <class Visitor>
void ForEachGroup(DzPropertyGroup* group, const Visitor& visit)
{
    visit(group);
    for (DzPropertyGroup* child = group->getFirstChild(); child; child = child->getNextSibling())
        ForEachGroup(child, visit);
}

} // namespace

void DzPropertyGroupTree::refresh() const
{
    if (!_stale)
        return;
    _stale = false;
    ForEachGroup(_root.get(), [](DzPropertyGroup* group) { group->_properties.clear(); });
    QList<const DzElement*> members;
    members.append(_owner);
    _owner->appendTreeMembers(&members);
    for (const DzElement* member : std::as_const(members))
        addFrom(*member);
}

void DzPropertyGroupTree::addFrom(const DzElement& element) const
{
    const int count = _isPrivate ? element.getNumPrivateProperties() : element.getNumProperties();
    QString lastPath;
    DzPropertyGroup* group = _root.get();
    for (int i = 0; i < count; ++i) {
        DzProperty* const property = _isPrivate ? element.getPrivateProperty(i) : element.getProperty(i);
        if (property->getPath() != lastPath) {
            lastPath = property->getPath();
            group = _root.get();
            for (const QString& name : lastPath.split(QLatin1Char('/'), Qt::SkipEmptyParts))
                group = group->child(name);
        }
        group->_properties.append(property);
    }
}
