// Sets of named values and their texts.
// SPDX-License-Identifier: MIT

#include "dzfileiosettings.h"
#include "dzsettings.h"
#include "openhost/class_registry.h"
#include "openhost/diagnostics.h"
#include "scene/scene_limits.h"

#include <QHash>
#include <QStringList>
#include <QVector>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

struct DzSettings::Impl {
    struct Item {
        QString key;
        Type type = StringValue;
        QString text; ///< of all but nested sets
        std::shared_ptr<DzSettings> nested;
    };
    QVector<Item> items;
    QHash<QString, int> index;

    Item& place(const QString& key, Type type)
    {
        if (!index.contains(key)) {
            index.insert(key, items.size());
            items.append(Item());
            items.last().key = key;
        }
        Item& item = items[index.value(key)];
        item.type = type;
        item.nested.reset();
        return item;
    }
    const Item* find(const QString& key) const
    {
        const auto found = index.constFind(key);
        return found == index.constEnd() ? nullptr : &items.at(*found);
    }
    void reindex()
    {
        index.clear();
        for (int i = 0; i < items.size(); ++i)
            index.insert(items.at(i).key, i);
    }
};

namespace {

using Json = nlohmann::ordered_json;

QString FloatText(double value)
{
    return QString::number(value, 'g', std::numeric_limits<double>::max_digits10);
}

bool ToBool(const QString& text, bool* ok)
{
    const QString word = text.trimmed().toLower();
    const double number = word.toDouble(ok);
    if (*ok)
        return number != 0.0;
    const bool yes =
        word == QLatin1String("true") || word == QLatin1String("yes") || word == QLatin1String("on");
    *ok =
        yes || word == QLatin1String("false") || word == QLatin1String("no") || word == QLatin1String("off");
    return yes;
}

double ToNumber(const QString& text, bool* ok)
{
    const double number = text.toDouble(ok);
    return *ok ? number : ToBool(text, ok) ? 1.0 : 0.0;
}

const char* const typeNames[] = {"String", "Int", "Bool", "Float", "Settings"};

} // namespace

DzSettings::DzSettings() : _impl(new Impl) {}
DzSettings::DzSettings(const DzSettings& other) : QObject(), _impl(new Impl)
{
    *this = other;
}
DzSettings::~DzSettings() = default;

DzSettings& DzSettings::operator=(const DzSettings& other)
{
    if (this == &other)
        return *this;
    _impl->items = other._impl->items;
    _impl->index = other._impl->index;
    for (Impl::Item& item : _impl->items) {
        if (item.nested)
            item.nested = std::make_shared<DzSettings>(*item.nested);
    }
    return *this;
}

void DzSettings::setStringValue(const QString& key, const QString& value)
{
    _impl->place(key, StringValue).text = value;
}
void DzSettings::setFloatValue(const QString& key, double value)
{
    _impl->place(key, FloatValue).text = FloatText(value);
}
void DzSettings::setIntValue(const QString& key, int value)
{
    _impl->place(key, IntValue).text = QString::number(value);
}

void DzSettings::setBoolValue(const QString& key, bool value)
{
    _impl->place(key, BoolValue).text = QLatin1String(value ? "true" : "false");
}

QString DzSettings::getStringValue(const QString& key, const QString& def) const
{
    const Impl::Item* const item = _impl->find(key);
    return item && item->type != SettingsValue ? item->text : def;
}

double DzSettings::getFloatValue(const QString& key, double def) const
{
    const Impl::Item* const item = _impl->find(key);
    bool ok = item && item->type != SettingsValue;
    const double value = ok ? ToNumber(item->text, &ok) : def;
    return ok ? value : def;
}

int DzSettings::getIntValue(const QString& key, int def) const
{
    const double value = getFloatValue(key, def);
    const bool fits = value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(value) : def;
}

bool DzSettings::getBoolValue(const QString& key, bool def) const
{
    const Impl::Item* const item = _impl->find(key);
    bool ok = item && item->type != SettingsValue;
    const bool value = ok ? ToBool(item->text, &ok) : def;
    return ok ? value : def;
}

DzSettings* DzSettings::setSettingsValue(const QString& key)
{
    if (DzSettings* const present = getSettingsValue(key))
        return present;
    Impl::Item& item = _impl->place(key, SettingsValue);
    item.text.clear();
    item.nested = std::make_shared<DzSettings>();
    return item.nested.get();
}

DzSettings* DzSettings::setSettingsValue(const QString& key, const DzSettings* settings)
{
    auto copy = settings ? std::make_shared<DzSettings>(*settings) : std::make_shared<DzSettings>();
    Impl::Item& item = _impl->place(key, SettingsValue);
    item.text.clear();
    item.nested = std::move(copy);
    return item.nested.get();
}

DzSettings* DzSettings::getSettingsValue(const QString& key) const
{
    const Impl::Item* const item = _impl->find(key);
    return item ? item->nested.get() : nullptr;
}

int DzSettings::hasKey(const QString& key) const
{
    return _impl->index.value(key, -1);
}
int DzSettings::getNumValues() const
{
    return _impl->items.size();
}
QString DzSettings::getKey(int index) const
{
    return _impl->items.value(index).key;
}
QString DzSettings::getValue(int index) const
{
    return _impl->items.value(index).text;
}
DzSettings::Type DzSettings::getValueType(int index) const
{
    return _impl->items.value(index).type;
}

void DzSettings::removeValue(const QString& key)
{
    const int index = hasKey(key);
    if (index < 0)
        return;
    _impl->items.remove(index);
    _impl->reindex();
}

void DzSettings::clear()
{
    _impl->items.clear();
    _impl->index.clear();
}

void DzSettings::copySetting(const QString& key, const DzSettings* source)
{
    const Impl::Item* const item = source ? source->_impl->find(key) : nullptr;
    if (!item)
        return;
    if (item->nested) {
        setSettingsValue(key, item->nested.get());
        return;
    }
    const Impl::Item copy = *item;
    _impl->place(key, copy.type).text = copy.text;
}

void DzSettings::replaceWithSettings(const DzSettings* settings)
{
    if (settings)
        *this = *settings;
    else
        clear();
}

namespace {

Json ToJson(const DzSettings& settings)
{
    Json json = Json::object();
    for (int i = 0; i < settings.getNumValues(); ++i) {
        const QString key = settings.getKey(i);
        Json& value = json[key.toStdString()];
        switch (settings.getValueType(i)) {
        case DzSettings::StringValue:
            value = settings.getStringValue(key).toStdString();
            break;
        case DzSettings::IntValue:
            value = settings.getIntValue(key);
            break;
        case DzSettings::BoolValue:
            value = settings.getBoolValue(key);
            break;
        case DzSettings::FloatValue:
            value = settings.getFloatValue(key);
            break;
        case DzSettings::SettingsValue:
            value = ToJson(*settings.getSettingsValue(key));
            break;
        }
    }
    return json;
}

bool FromJson(const Json& json, DzSettings* settings)
{
    if (!json.is_object())
        return false;
    for (auto it = json.begin(); it != json.end(); ++it) {
        const QString key = QString::fromStdString(it.key());
        const Json& value = it.value();
        if (value.is_boolean())
            settings->setBoolValue(key, value.get<bool>());
        else if (value.is_number_integer() &&
                 std::abs(value.get<double>()) <= std::numeric_limits<int>::max())
            settings->setIntValue(key, value.get<int>());
        else if (value.is_number())
            settings->setFloatValue(key, value.get<double>());
        else if (value.is_string())
            settings->setStringValue(key, QString::fromStdString(value.get<std::string>()));
        else if (!FromJson(value, settings->setSettingsValue(key)))
            return false;
    }
    return true;
}

void WriteXml(const DzSettings& settings, QXmlStreamWriter* xml)
{
    for (int i = 0; i < settings.getNumValues(); ++i) {
        xml->writeStartElement(QStringLiteral("Setting"));
        xml->writeAttribute(QStringLiteral("Key"), settings.getKey(i));
        xml->writeAttribute(QStringLiteral("Type"), QLatin1String(typeNames[settings.getValueType(i)]));
        if (const DzSettings* const nested = settings.getSettingsValue(settings.getKey(i)))
            WriteXml(*nested, xml);
        else
            xml->writeAttribute(QStringLiteral("Value"), settings.getValue(i));
        xml->writeEndElement();
    }
}

bool SetFromText(DzSettings* settings, const QString& key, const QString& type, const QString& text)
{
    bool ok = true;
    if (type == QLatin1String("String"))
        settings->setStringValue(key, text);
    else if (type == QLatin1String("Int"))
        settings->setIntValue(key, text.toInt(&ok));
    else if (type == QLatin1String("Bool"))
        settings->setBoolValue(key, ToBool(text, &ok));
    else if (type == QLatin1String("Float"))
        settings->setFloatValue(key, text.toDouble(&ok));
    else
        ok = false;
    return ok;
}

/// @param tooDeep  counts what is left out
bool ReadXml(QXmlStreamReader* xml, DzSettings* settings, int depth, std::size_t* tooDeep)
{
    while (xml->readNextStartElement()) {
        if (xml->name() != QLatin1String("Setting"))
            return false;
        if (depth > openhost::deepestSettings) {
            ++*tooDeep;
            xml->skipCurrentElement();
            continue;
        }
        const QXmlStreamAttributes attributes = xml->attributes();
        const QString key = attributes.value(QLatin1String("Key")).toString();
        const QString type = attributes.value(QLatin1String("Type")).toString();
        if (type == QLatin1String("Settings")) {
            if (!ReadXml(xml, settings->setSettingsValue(key), depth + 1, tooDeep))
                return false;
            continue;
        }
        if (!SetFromText(settings, key, type, attributes.value(QLatin1String("Value")).toString()))
            return false;
        xml->skipCurrentElement();
    }
    return !xml->hasError();
}

bool ReadXmlText(const QString& text, DzSettings* settings, std::size_t* tooDeep)
{
    QXmlStreamReader xml(text);
    return xml.readNextStartElement() && xml.name() == QLatin1String("Settings") &&
           ReadXml(&xml, settings, 0, tooDeep);
}

bool ReadJsonText(const QString& text, DzSettings* settings, std::size_t* tooDeep)
{
    // What is made of the text goes by recursion, so the depth is held while it is read. The outermost set
    // has none, and what is in the deepest one is one deeper.
    const auto isShallow = [tooDeep](int depth, Json::parse_event_t event, Json&) {
        const int most = openhost::deepestSettings + 1;
        const bool begins = event == Json::parse_event_t::object_start ||
                            event == Json::parse_event_t::array_start || event == Json::parse_event_t::value;
        if (begins && depth == most + 1)
            ++*tooDeep;
        return depth <= most;
    };
    const Json json = Json::parse(text.toStdString(), isShallow, false);
    return FromJson(json, settings);
}

void TellTooDeep(std::size_t count)
{
    if (count > 0)
        openhost::Report({base::Severity::Warning,
                          {},
                          "settings",
                          fmt::format("{} in more than {} sets in each other, left out",
                                      count == 1 ? "1 value lies" : fmt::format("{} values lie", count),
                                      openhost::deepestSettings)});
}

} // namespace

bool DzSettings::fromString(const QString& text)
{
    DzSettings read;
    const bool isXml = text.trimmed().startsWith(QLatin1Char('<'));
    std::size_t tooDeep = 0;
    if (!(isXml ? ReadXmlText(text, &read, &tooDeep) : ReadJsonText(text, &read, &tooDeep)))
        return false;
    TellTooDeep(tooDeep);
    *this = read;
    return true;
}

QString DzSettings::toString() const
{
    QString text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartElement(QStringLiteral("Settings"));
    WriteXml(*this, &xml);
    xml.writeEndElement();
    return text;
}

QString DzSettings::toJsonString() const
{
    return QString::fromStdString(ToJson(*this).dump(-1, ' ', false, Json::error_handler_t::replace));
}

DzFileIOSettings::DzFileIOSettings() = default;
DzFileIOSettings::DzFileIOSettings(const DzFileIOSettings& other) : DzSettings(other) {}
DzFileIOSettings::~DzFileIOSettings() = default;

namespace {

const openhost::BuiltInClass<DzFileIOSettings> g_registration;

} // namespace
