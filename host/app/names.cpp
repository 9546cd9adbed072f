// Names and versions.
// SPDX-License-Identifier: MIT

#include "dzbase.h"
#include "dzversion.h"

DzBase::DzBase() = default;
DzBase::~DzBase() = default;

void DzBase::setName(const QString& name)
{
    if (name == _name)
        return;
    const QString oldName = _name;
    _name = name;
    renamed(oldName);
    emit nameChanged(_name);
}

QString DzBase::className() const
{
    return QLatin1String(metaObject()->className());
}

void DzBase::renamed(const QString&) {}

QString DzVersion::getLongVersionString() const
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(getMajorVersion())
        .arg(getMinorVersion())
        .arg(getRevisionNumber())
        .arg(getBuildNumber());
}
