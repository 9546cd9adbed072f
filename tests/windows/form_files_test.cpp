// The form files themselves: what stands in them until a dialog puts its own text there, and that the older
// toolkit, whose form compiler checks nothing, knows all that they ask for.
// SPDX-License-Identifier: MIT

#include <QDirIterator>
#include <QFile>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

/// A property, or what belongs to an item's header, of a widget in a form.
struct Property {
    std::string ofClass;
    std::string ofName;
    std::string name;
    std::string text; ///< its first value
};

/// What a form holds, in the order of the file.
struct Form {
    std::vector<Property> properties;
    std::vector<std::string> layoutAttributes; ///< "QGridLayout columnstretch"
    std::set<std::string> elements;
    std::string version;
};

class Reader {
public:
    explicit Reader(const QString& path) : _file(path)
    {
        EXPECT_TRUE(_file.open(QIODevice::ReadOnly)) << path.toStdString();
        _xml.setDevice(&_file);
    }
    Form read()
    {
        while (!_xml.atEnd()) {
            switch (_xml.readNext()) {
            case QXmlStreamReader::StartElement:
                begin();
                break;
            case QXmlStreamReader::Characters:
                if (!_xml.isWhitespace() && _inProperty && _form.properties.back().text.empty())
                    _form.properties.back().text = _xml.text().toString().toStdString();
                break;
            case QXmlStreamReader::EndElement:
                end();
                break;
            default:
                break;
            }
        }
        EXPECT_FALSE(_xml.hasError()) << _xml.errorString().toStdString();
        return _form;
    }

private:
    std::string attribute(const char* name) const
    {
        return _xml.attributes().value(QLatin1String(name)).toString().toStdString();
    }
    void begin()
    {
        const std::string element = _xml.name().toString().toStdString();
        _form.elements.insert(element);
        if (element == "ui")
            _form.version = attribute("version");
        else if (element == "widget")
            _owners.emplace_back(attribute("class"), attribute("name"));
        else if (element == "spacer" || element == "column")
            _owners.emplace_back(element, _owners.back().second);
        else if (element == "layout")
            for (const QXmlStreamAttribute& each : _xml.attributes())
                _form.layoutAttributes.push_back(attribute("class") + " " +
                                                 each.name().toString().toStdString());
        else if (element == "property" || element == "attribute") {
            _form.properties.push_back(
                {_owners.back().first, _owners.back().second, attribute("name"), std::string()});
            _inProperty = true;
        }
    }
    void end()
    {
        const QString element = _xml.name().toString();
        if (element == QLatin1String("property") || element == QLatin1String("attribute"))
            _inProperty = false;
        else if (element == QLatin1String("widget") || element == QLatin1String("spacer") ||
                 element == QLatin1String("column"))
            _owners.pop_back();
    }

    QFile _file;
    QXmlStreamReader _xml;
    Form _form;
    std::vector<std::pair<std::string, std::string>> _owners; ///< class and name, the innermost last
    bool _inProperty = false;
};

std::vector<QString> FormFiles()
{
    std::vector<QString> files;
    for (const char* const room : {"plugin", "shared"}) {
        QDirIterator all(QLatin1String(GANTREL_SOURCE_DIR "/") + QLatin1String(room),
                         {QStringLiteral("*.ui")}, QDir::Files, QDirIterator::Subdirectories);
        while (all.hasNext())
            files.push_back(all.next());
    }
    return files;
}

Form Read(const char* file)
{
    return Reader(QLatin1String(GANTREL_SOURCE_DIR "/") + QLatin1String(file)).read();
}

std::string TextOf(const Form& form, const char* name, const char* property)
{
    for (const Property& each : form.properties)
        if (each.ofName == name && each.name == property)
            return each.text;
    return "(none)";
}

// Classes and properties that version 4.8 has as well.
const std::set<std::string> ofEveryWidget{"geometry", "windowTitle", "sizePolicy"};
const std::map<std::string, std::set<std::string>> ofClass{
    {"QCheckBox", {"text"}},
    {"QComboBox", {}},
    {"QDialog", {}},
    {"QDialogButtonBox", {"orientation", "standardButtons"}},
    {"QGroupBox", {"title"}},
    {"QLabel",
     {"alignment", "buddy", "openExternalLinks", "text", "textFormat", "textInteractionFlags", "wordWrap"}},
    {"QLineEdit", {}},
    {"QPushButton", {"default", "text"}},
    {"QRadioButton", {"text"}},
    {"QTreeWidget", {"columnCount", "headerVisible"}},
    {"column", {"text"}},
    {"spacer", {"orientation", "sizeHint"}}};
const std::set<std::string> layoutAttributes{
    "QGridLayout class", "QGridLayout name",    "QGridLayout columnstretch", "QHBoxLayout class",
    "QHBoxLayout name",  "QHBoxLayout stretch", "QVBoxLayout class",         "QVBoxLayout name"};
const std::set<std::string> elements{
    "attribute", "bool",       "class",      "column",     "connections", "cstring",  "enum",
    "height",    "horstretch", "item",       "layout",     "number",      "property", "rect",
    "resources", "set",        "size",       "sizepolicy", "spacer",      "string",   "tabstop",
    "tabstops",  "ui",         "verstretch", "widget",     "width",       "x",        "y"};

TEST(FormFiles, ask_for_nothing_that_the_older_toolkit_lacks)
{
    const std::vector<QString> files = FormFiles();
    EXPECT_GE(files.size(), 4u);
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        const Form form = Reader(file).read();
        EXPECT_EQ(form.version, "4.0");
        for (const Property& each : form.properties) {
            const auto known = ofClass.find(each.ofClass);
            ASSERT_NE(known, ofClass.end()) << each.ofClass;
            EXPECT_TRUE(ofEveryWidget.count(each.name) || known->second.count(each.name))
                << each.ofClass << ' ' << each.name;
        }
        for (const std::string& each : form.layoutAttributes)
            EXPECT_TRUE(layoutAttributes.count(each)) << each;
        for (const std::string& each : form.elements)
            EXPECT_TRUE(elements.count(each)) << each;
    }
}

TEST(FormFiles, hold_the_texts_that_stand_in_for_those_of_the_dialogs)
{
    const Form convert = Read("shared/forms/gnt_dlg_convert.ui");
    EXPECT_EQ(TextOf(convert, "plblIntro", "text"),
              "You are about to convert the active morphs in the selected");
    EXPECT_EQ(TextOf(convert, "pRadioResolutionSubd", "text"), "Subd");
    const Form success = Read("shared/forms/gnt_dlg_success.ui");
    EXPECT_EQ(TextOf(success, "plblIntro", "text"), "TBR1");
    EXPECT_EQ(TextOf(success, "SuccessDialog", "windowTitle"), "Dialog");
    const Form picker = Read("shared/forms/ks_dlg_morph-path.ui");
    EXPECT_EQ(TextOf(picker, "MorphPathDialog", "windowTitle"), "Dialog");
    EXPECT_EQ(TextOf(picker, "pTreeWidgetPropertyPaths", "text"), "1");
}

} // namespace
