// Driving host objects by the names of their methods, where the host offers no header.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <mutex>
#include <vector>

#include <QByteArray>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QObject>
#include <QString>

namespace kst {
namespace qt {

/// One entry of a wrapper's method table.
struct MagicMethod {
    const char* signature; ///< such as "setSource(DzNode*)"
    QMetaMethod method;    ///< resolved once for the class
    QByteArray returnType; ///< as the method declares it; "void" for none
};

/// What every wrapper needs, whatever it wraps.
class MagicBase {
public:
    /// @throws Exception  "failed to resolve method {}::{}"
    static QMetaMethod FindMethodOrThrow(const QMetaObject& metaObject, const char* signature);
    /// @throws Exception  "failed to resolve property {}::{}"
    static QMetaProperty FindQtPropertyOrThrow(const QMetaObject& metaObject, const char* name);
    /// A new object of a class that only the host's class factories know; the caller owns it.
    /// @throws Exception  "cannot find {} factory", "{} factory failed to create object"
    static QObject* CreateInstanceViaFactory_X(const char* className);
    /// Held while a wrapper class resolves its table, so that two first uses do not resolve it twice.
    static std::mutex& GetInitMutex();

protected:
    MagicBase() = default;
    ~MagicBase() = default;
    MagicBase(const MagicBase&) = delete;
    MagicBase& operator=(const MagicBase&) = delete;

    /// Resolves every signature of the table.
    static void ResolveTable_X(const QMetaObject& metaObject, std::vector<MagicMethod>& table);
    [[noreturn]] static void ThrowCannotInvoke(const QMetaObject& metaObject, const QMetaMethod& method);
};

/// Base of a wrapper class: Derived names its table through `static const std::vector<const char*>&
/// Signatures()`. An instance holds a reference to the wrapped object, of type Base; the table is shared by
/// the class.
template <class Base, class Derived>
class MagicImpl : public MagicBase {
protected:
    /// @throws Exception  the object's class lacks a method of the table
    explicit MagicImpl(Base& object) : _object(object) { ResolveMethods_X(object); }

    Base& object() const { return _object; }
    static std::size_t ResolveCount() { return State().resolveCount; }

    /// Calls the table's method with arguments named by their type texts.
    /// @throws Exception  "failed to invoke {}::{}"
    template <class... Arguments>
    void invoke(std::size_t index, Arguments... arguments) const
    {
        const QMetaMethod& method = State().table[index].method;
        if (!method.invoke(&_object, Qt::DirectConnection, arguments...))
            throwCannotInvoke(method);
    }

    /// The same for a method that may tell whether it did its work.
    /// @return the host's bool; true when the method's type is another, void for one, since a call cannot ask
    /// for what the method does not have
    template <class... Arguments>
    bool invokeBool(std::size_t index, Arguments... arguments) const
    {
        return invokeAs<bool>(index, "bool", true, arguments...);
    }

    /// The same for a method that may answer with a text.
    /// @return the host's text; empty when the method's type is another
    template <class... Arguments>
    QString invokeText(std::size_t index, Arguments... arguments) const
    {
        return invokeAs<QString>(index, "QString", QString(), arguments...);
    }

    [[noreturn]] static void throwCannotInvoke(const QMetaMethod& method)
    {
        ThrowCannotInvoke(*State().metaObject, method);
    }

private:
    struct ClassState {
        const QMetaObject* metaObject = nullptr;
        std::vector<MagicMethod> table;
        std::size_t resolveCount = 0; ///< how often the table was resolved: once, unless that failed
    };

    template <class Result, class... Arguments>
    Result invokeAs(std::size_t index, const char* typeName, Result result, Arguments... arguments) const
    {
        if (State().table[index].returnType == typeName)
            invoke(index, QGenericReturnArgument(typeName, &result), arguments...);
        else
            invoke(index, arguments...);
        return result;
    }

    static ClassState& State()
    {
        static ClassState state;
        return state;
    }

    static void ResolveMethods_X(const Base& object)
    {
        const std::lock_guard<std::mutex> lock(GetInitMutex());
        ClassState& state = State();
        if (state.metaObject)
            return;
        std::vector<MagicMethod> table;
        for (const char* const signature : Derived::Signatures())
            table.push_back(MagicMethod{signature, QMetaMethod(), QByteArray()});
        ResolveTable_X(*object.metaObject(), table);
        state.table.swap(table);
        state.metaObject = object.metaObject();
        ++state.resolveCount;
    }

    Base& _object;
};

} // namespace qt
} // namespace kst
