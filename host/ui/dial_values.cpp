// Values of many dials at once: memorized ones, defaults, and whole shapes on the clipboard.
// SPDX-License-Identifier: MIT

#include "dial_values.h"

#include "dzmodifier.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzpropertygrouptree.h"
#include "dzundostack.h"

#include <QCoreApplication>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <unordered_map>

namespace openhost {

namespace {

const QLatin1String shapeKey("shape"), ofKey("of"), dialsKey("dials"), nameKey("name"), labelKey("label"),
    valueKey("value");

QString Tr(const char* text)
{
    return QCoreApplication::translate("openhost", text);
}

/// The values that were memorized, by the dial, which may be gone: another one may have its place in memory.
struct Memorized {
    QPointer<const DzProperty> property;
    double value = 0.0;
};

std::unordered_map<const DzProperty*, Memorized>& AllMemorized()
{
    static std::unordered_map<const DzProperty*, Memorized> all;
    return all;
}

const DzNumericProperty* Number(const DzProperty* property)
{
    return qobject_cast<const DzNumericProperty*>(property);
}

void Set(DzNumericProperty& dial, double raw, DialReport& report)
{
    if (dial.getDoubleRawValue() == raw)
        return;
    if (dial.isLocked()) {
        report.locked.append(dial.getLabel());
        return;
    }
    dial.beginEdit();
    dial.setDoubleRawValue(raw);
    dial.finishEdit();
    ++report.set;
    if (dial.getDoubleRawValue() != raw)
        report.held.append(dial.getLabel());
}

/// What is done to many dials, as one step to take back.
class OneStep {
public:
    explicit OneStep(const QString& caption) : _caption(caption)
    {
        if (dzUndoStack)
            dzUndoStack->beginHold();
    }
    ~OneStep()
    {
        if (dzUndoStack)
            dzUndoStack->accept(_caption);
    }
    OneStep(const OneStep&) = delete;
    OneStep& operator=(const OneStep&) = delete;

private:
    QString _caption;
};

/// What another figure's dial of the same meaning is called too.
QString NameOf(const DzProperty& dial)
{
    const auto* const modifier = qobject_cast<const DzModifier*>(dial.getOwner());
    return modifier ? modifier->getName() : dial.getName();
}

/// Its place, and how it is shown.
bool IsOfNodeItself(const DzProperty& dial)
{
    const QString path = dial.getPath();
    return qobject_cast<const DzNode*>(dial.getOwner()) &&
           (path.startsWith(QLatin1String("/General")) || path.startsWith(QLatin1String("/Display")));
}

/// Those that make up the node's shape.
std::vector<DzNumericProperty*> ShapeDials(const DzNode& node)
{
    std::vector<DzNumericProperty*> dials;
    for (QObject* const object : node.getPropertyGroups()->getAllProperties()) {
        auto* const dial = qobject_cast<DzNumericProperty*>(object);
        if (dial && !dial->isPrivate() && !IsOfNodeItself(*dial))
            dials.push_back(dial);
    }
    return dials;
}

QJsonObject ShapeIn(const QByteArray& text)
{
    constexpr int most = 16 << 20; // far more than the dials of any figure
    if (text.size() > most)
        return QJsonObject();
    return QJsonDocument::fromJson(text).object().value(shapeKey).toObject();
}

QString Listed(const QStringList& labels)
{
    constexpr int most = 5;
    const QString some = QStringList(labels.mid(0, most)).join(QLatin1String(", "));
    return labels.size() > most ? Tr("%1 and %2 more").arg(some, QString::number(labels.size() - most))
                                : some;
}

} // namespace

bool IsChanged(const DzProperty& property)
{
    const DzNumericProperty* const dial = Number(&property);
    return dial && dial->getDoubleValue() != dial->getDoubleDefaultValue();
}

QString DialReport::text() const
{
    QStringList sentences{set == 1 ? Tr("1 dial was set.") : Tr("%1 dials were set.").arg(set)};
    if (!locked.isEmpty())
        sentences << Tr("Locked, and left as they are: %1.").arg(Listed(locked));
    if (!held.isEmpty())
        sentences << Tr("Held within their limits: %1.").arg(Listed(held));
    if (!missing.isEmpty())
        sentences << Tr("Not on this figure: %1.").arg(Listed(missing));
    return sentences.join(QLatin1Char(' '));
}

DialReport ResetDials(const Dials& dials)
{
    const OneStep step(Tr("Reset Dials"));
    DialReport report;
    for (const QPointer<DzProperty>& property : dials)
        if (auto* const dial = qobject_cast<DzNumericProperty*>(property.data()))
            Set(*dial, dial->getDoubleDefaultValue(), report);
    return report;
}

int MemorizeDials(const Dials& dials)
{
    int count = 0;
    for (const QPointer<DzProperty>& property : dials)
        if (const DzNumericProperty* const dial = Number(property)) {
            AllMemorized()[dial] = {dial, dial->getDoubleRawValue()};
            ++count;
        }
    return count;
}

bool IsMemorized(const DzProperty& property)
{
    const auto found = AllMemorized().find(&property);
    return found != AllMemorized().end() && found->second.property == &property;
}

DialReport RestoreDials(const Dials& dials)
{
    const OneStep step(Tr("Restore Dials"));
    DialReport report;
    for (const QPointer<DzProperty>& property : dials) {
        auto* const dial = qobject_cast<DzNumericProperty*>(property.data());
        if (dial && IsMemorized(*dial))
            Set(*dial, AllMemorized()[dial].value, report);
    }
    return report;
}

QByteArray CopyShape(const DzNode& node)
{
    QJsonArray dials;
    for (const DzNumericProperty* const dial : ShapeDials(node)) {
        const double raw = dial->getDoubleRawValue();
        if (raw != dial->getDoubleDefaultValue())
            dials.append(
                QJsonObject{{nameKey, NameOf(*dial)}, {labelKey, dial->getLabel()}, {valueKey, raw}});
    }
    const QJsonObject shape{{ofKey, node.getLabel()}, {dialsKey, dials}};
    return QJsonDocument(QJsonObject{{shapeKey, shape}}).toJson();
}

bool IsShape(const QByteArray& text)
{
    return ShapeIn(text).value(dialsKey).isArray();
}

DialReport PasteShape(const QByteArray& text, DzNode& node)
{
    const OneStep step(Tr("Paste Shape"));
    DialReport report;
    QHash<QString, double> values;
    QHash<QString, QString> labels;
    for (const QJsonValue& value : ShapeIn(text).value(dialsKey).toArray()) {
        const QJsonObject dial = value.toObject();
        const QString name = dial.value(nameKey).toString();
        if (name.isEmpty() || !dial.value(valueKey).isDouble())
            continue;
        values.insert(name, dial.value(valueKey).toDouble());
        labels.insert(name, dial.value(labelKey).toString(name));
    }
    for (DzNumericProperty* const dial : ShapeDials(node)) {
        const QString name = NameOf(*dial);
        Set(*dial, values.value(name, dial->getDoubleDefaultValue()), report);
        labels.remove(name);
    }
    report.missing = labels.values();
    report.missing.sort(Qt::CaseInsensitive);
    return report;
}

} // namespace openhost
