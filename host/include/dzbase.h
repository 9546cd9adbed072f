// Named objects.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>

/// Base of everything that has an internal name.
class DzBase : public QObject {
    Q_OBJECT
public:
    DzBase();
    ~DzBase();

    Q_INVOKABLE QString getName() const { return _name; }
    Q_INVOKABLE void setName(const QString& name);
    /// The class name of the meta-object.
    Q_INVOKABLE QString className() const;

signals:
    void nameChanged(const QString& name);

protected:
    /// After the name has changed, before nameChanged.
    virtual void renamed(const QString& oldName);

private:
    Q_DISABLE_COPY(DzBase)
    QString _name;
};
