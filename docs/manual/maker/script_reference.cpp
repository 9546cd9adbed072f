// What scripts find in the host, as a chapter.
// SPDX-License-Identifier: MIT

#include "script_reference.h"

#include "header_texts.h"
#include "openhost/script_function.h"
#include "openhost/script_reference.h"

#include <QMetaEnum>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <map>

namespace manual {

namespace {

/// In the words of the script language.
QString TypeName(QString type)
{
    static const std::map<QString, QString> words{
        {"QString", "String"},      {"bool", "Boolean"},       {"int", "Number"},
        {"float", "Number"},        {"double", "Number"},      {"DzError", "Number"},
        {"QStringList", "Array"},   {"QObjectList", "Array"},  {"QVariantList", "Array"},
        {"QDateTime", "Date"},      {"QVariant", "any value"}, {"QSize", "{width, height}"},
        {"DzUri", "{filePath, id}"}};
    type.remove(QStringLiteral("const ")).remove(QLatin1Char('*')).remove(QLatin1Char('&'));
    const auto word = words.find(type.trimmed());
    return word == words.end() ? type.trimmed() : word->second;
}

QString Code(const QString& text)
{
    return QLatin1Char('`') + text + QLatin1Char('`');
}

/// Texts of headers quote code as this chapter does, and have characters that Markdown takes otherwise.
QString Sentence(QString text)
{
    static const QRegularExpression argument(QStringLiteral("[.;]?\\s*@param\\s+(\\w+)\\s+")),
        result(QStringLiteral("[.;]?\\s*@(return|throws)\\s+"));
    text.replace(argument, QStringLiteral(". \\1: ")).replace(result, QStringLiteral(". Gives "));
    text.remove(QRegularExpression(QStringLiteral("^[. ]+")));
    // Between backquotes all characters stand for themselves.
    QStringList parts = text.split(QLatin1Char('`'));
    for (int i = 0; i < parts.size(); i += 2)
        for (const char character : {'\\', '*', '_', '<', '[', ']'})
            parts[i].replace(QLatin1Char(character), QLatin1Char('\\') + QString(QLatin1Char(character)));
    text = parts.join(QLatin1Char('`'));
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text.isEmpty() || text.endsWith(QLatin1Char('.')) ? text : text + QLatin1Char('.');
}

QString Item(const QString& code, const QString& gives, const QString& text)
{
    const QString result = gives.isEmpty() ? QString() : QStringLiteral(" gives ") + gives;
    const QString sentence = Sentence(text);
    return QStringLiteral("- %1%2. %3").arg(Code(code), result, sentence).trimmed() + QLatin1Char('\n');
}

/// @param fewest  arguments that a call must have
QString Signature(const QMetaMethod& method, int fewest)
{
    const QList<QByteArray> names = method.parameterNames();
    QStringList arguments;
    for (int i = 0; i < names.size(); ++i)
        arguments << QString::fromLatin1(names[i]) + QStringLiteral(": ") +
                         TypeName(QString::fromLatin1(method.parameterTypes().at(i))) +
                         (i < fewest ? QString() : QStringLiteral("?"));
    return QStringLiteral("%1(%2)").arg(QString::fromLatin1(method.name()),
                                        arguments.join(QStringLiteral(", ")));
}

/// The class's own methods of a kind. Those with defaults come again for each argument that may be left out.
QString Methods(const QMetaObject& metaObject, bool areSignals, const HeaderTexts& texts)
{
    QString text;
    const QString className = QLatin1String(metaObject.className());
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
        const QMetaMethod method = metaObject.method(i);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        if (isSignal != areSignals || method.access() == QMetaMethod::Private ||
            method.attributes() & QMetaMethod::Cloned)
            continue;
        int fewest = method.parameterCount();
        for (int next = i + 1;
             next < metaObject.methodCount() && metaObject.method(next).attributes() & QMetaMethod::Cloned;
             ++next)
            --fewest;
        const QString type = TypeName(QLatin1String(method.typeName()));
        text += Item(Signature(method, fewest), type == QLatin1String("void") ? QString() : type,
                     texts.ofMethod(className, QString::fromLatin1(method.name())));
    }
    return text;
}

QString Properties(const QMetaObject& metaObject)
{
    QString text;
    for (int i = metaObject.propertyOffset(); i < metaObject.propertyCount(); ++i) {
        const QMetaProperty property = metaObject.property(i);
        text += QStringLiteral("- ") + Code(QLatin1String(property.name())) + QStringLiteral(": ") +
                TypeName(QLatin1String(property.typeName())) +
                (property.isWritable() ? QStringLiteral(".\n") : QStringLiteral(", to read only.\n"));
    }
    return text;
}

QString Enumerations(const QMetaObject& metaObject)
{
    QString text;
    for (int i = metaObject.enumeratorOffset(); i < metaObject.enumeratorCount(); ++i) {
        const QMetaEnum enumeration = metaObject.enumerator(i);
        QStringList values;
        for (int k = 0; k < enumeration.keyCount(); ++k)
            values << QStringLiteral("%1 %2")
                          .arg(Code(QLatin1String(enumeration.key(k))))
                          .arg(enumeration.value(k));
        text += QStringLiteral("- %1: %2.\n")
                    .arg(QLatin1String(enumeration.name()), values.join(QStringLiteral(", ")));
    }
    return text;
}

QString Part(const char* heading, const QString& items)
{
    return items.isEmpty() ? QString() : QStringLiteral("%1:\n\n%2\n").arg(QLatin1String(heading), items);
}

QString ClassText(const openhost::ScriptClass& one, const HeaderTexts& texts)
{
    const QMetaObject& metaObject = *one.metaObject;
    const QString name = QLatin1String(metaObject.className());
    QString text = QStringLiteral("### %1\n\n").arg(name);
    QStringList said;
    if (const QMetaObject* const base = metaObject.superClass(); base != &QObject::staticMetaObject)
        said << QStringLiteral("A kind of %1.").arg(QLatin1String(base->className()));
    if (const QString sentence = Sentence(texts.ofClass(name)); !sentence.isEmpty())
        said << sentence;
    if (one.isMade)
        said << QStringLiteral("`new %1(%2)` makes one.").arg(name, one.arguments);
    if (!said.isEmpty())
        text += said.join(QLatin1Char(' ')) + QStringLiteral("\n\n");
    return text + Part("Properties", Properties(metaObject)) +
           Part("Methods", Methods(metaObject, false, texts)) +
           Part("Signals", Methods(metaObject, true, texts)) + Part("Values", Enumerations(metaObject));
}

QString ValueText(const openhost::ScriptValueClass& one)
{
    QString methods;
    for (const openhost::ScriptValueMethod& method : one.methods)
        methods +=
            Item(QStringLiteral("%1(%2)").arg(QLatin1String(method.name), QLatin1String(method.arguments)),
                 QString(), QLatin1String(method.what));
    return QStringLiteral("### %1\n\n%3 `new %1(%2)` makes one.\n\n").arg(one.name, one.arguments, one.what) +
           Part("Methods", methods);
}

const char* const beginning =
    "# Reference for scripts\n\n"
    "This chapter is made of the program itself: it has what its scripts see, and nothing else. A question "
    "mark "
    "stands behind arguments that may be left out. Classes have the methods of those that they are kinds of "
    "as well; "
    "what the toolkit's own classes have, such as QWidget, is not listed. Lengths are centimetres, angles "
    "degrees, and "
    "indices count from 0. Every object of the host can be asked "
    "`object.inherits(\"DzNode\")`. A signal is connected with `object.signal.connect(function)`.\n\n"
    "## Functions\n\n";

const char* const objects =
    "\n## Objects\n\n"
    "- `Scene`: what is in the scene, a DzScene.\n"
    "- `App`: the application with its managers and folders, a DzApp.\n"
    "- `MainWindow`: panes, menus and viewports, a DzMainWindow. `gantrel script` does not show it.\n"
    "- `MessageBox`: `information`, `warning`, `critical` and `question` show a text with a title and up to "
    "three "
    "buttons and give the index of the one that was pressed. Where nobody sees them they give the last "
    "one.\n\n"
    "## Classes\n\n";

} // namespace

QString ScriptReference(const HeaderTexts& texts)
{
    QString text = QLatin1String(beginning);
    for (const openhost::ScriptFunction& one : openhost::ScriptFunctions())
        text += QStringLiteral("- `%1(%2)`. %3\n")
                    .arg(QLatin1String(one.name), QLatin1String(one.arguments), QLatin1String(one.what));
    text += QLatin1String(objects);
    for (const openhost::ScriptClass& one : openhost::ScriptClasses())
        text += ClassText(one, texts);
    text += QLatin1String("## Values\n\n");
    for (const openhost::ScriptValueClass& one : openhost::ScriptValueClasses())
        text += ValueText(one);
    return text;
}

} // namespace manual
