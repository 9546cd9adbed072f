// Choosing what the user wishes of all runs.
// SPDX-License-Identifier: MIT

#include "preferences_dialog.h"

#include "folders_editor.h"
#include "languages.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QThread>
#include <QVBoxLayout>

#include <algorithm>

namespace desktop {

namespace {

enum Page { Folders, Author, Units, Memory, Threads, Look, Language, count };

QLabel* MakeText(const QString& text)
{
    auto* const label = new QLabel(text);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

PreferencesDialog::PreferencesDialog(QWidget* parent, const Preferences& preferences)
    : QDialog(parent), _titles(new QListWidget), _pages(new QStackedWidget)
{
    setObjectName(QStringLiteral("PreferencesDialog"));
    setWindowTitle(tr("Preferences"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    _titles->setObjectName(QStringLiteral("Pages"));
    _titles->setAccessibleName(tr("Pages"));
    addFolders();
    addAuthor();
    addUnits();
    addMemory();
    addThreads();
    addLook();
    addLanguage();
    for (int page = 0; page < Page::count; ++page)
        fill(preferences, page);
    _titles->setFixedWidth(_titles->sizeHintForColumn(0) + 4 * fontMetrics().averageCharWidth());

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel |
                                               QDialogButtonBox::RestoreDefaults);
    QPushButton* const defaults = buttons->button(QDialogButtonBox::RestoreDefaults);
    defaults->setText(tr("Reset to &Defaults"));
    defaults->setToolTip(tr("The page that is shown"));
    connect(defaults, SIGNAL(clicked()), SLOT(resetPage()));
    connect(buttons, SIGNAL(accepted()), SLOT(accept()));
    connect(buttons, SIGNAL(rejected()), SLOT(reject()));
    connect(_titles, SIGNAL(currentRowChanged(int)), _pages, SLOT(setCurrentIndex(int)));
    auto* const row = new QHBoxLayout;
    row->addWidget(_titles);
    row->addWidget(_pages, 1);
    auto* const column = new QVBoxLayout(this);
    column->addLayout(row, 1);
    column->addWidget(buttons);
    _titles->setCurrentRow(0);
    _titles->setFocus();
}

QFormLayout* PreferencesDialog::addPage(const QString& title, const QString& text)
{
    auto* const page = new QWidget;
    auto* const form = new QFormLayout(page);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    if (!text.isEmpty())
        form->addRow(MakeText(text));
    _titles->addItem(title);
    _pages->addWidget(page);
    return form;
}

void PreferencesDialog::addFolders()
{
    QFormLayout& form = *addPage(tr("Content Folders"), QString());
    _folders = new FoldersEditor({});
    form.addRow(_folders);
    tellVariable(form, "content", *_folders);
}

void PreferencesDialog::addAuthor()
{
    QFormLayout& form = *addPage(
        tr("Author"), tr("Files that you save name their author. New morphs are saved under this name "
                         "too, unless you give another vendor there."));
    _name = addLine(form, tr("&Name:"), "AuthorName");
    _email = addLine(form, tr("&E-mail:"), "AuthorEmail");
    _url = addLine(form, tr("&Web site:"), "AuthorUrl");
    tellVariable(form, "author", *_name);
}

void PreferencesDialog::addUnits()
{
    QFormLayout& form = *addPage(
        tr("Units"), tr("Dials show lengths in this unit, and take numbers without a unit in it. Files "
                        "and morphs stay as they are."));
    _lengths = new QComboBox;
    _lengths->setObjectName(QStringLiteral("LengthUnit"));
    _lengths->addItems({tr("Centimetres"), tr("Metres"), tr("Inches")});
    form.addRow(tr("&Lengths:"), _lengths);
}

void PreferencesDialog::addMemory()
{
    QFormLayout& form = *addPage(
        tr("Memory"), tr("Pictures that are drawn of figures are kept on the disk. When there is no more "
                         "room, those that were used longest ago go."));
    _cache = addMebibytes(form, tr("&Pictures at most:"), "PictureCache", 1, mostPictureCacheMiB);
    form.addRow(MakeText(tr("Steps that can be undone are kept in memory. Those beyond go, the oldest first; "
                            "the last one stays.")));
    _undo = addMebibytes(form, tr("&Steps at most:"), "UndoMemory", leastUndoMiB, mostUndoMiB);
}

QSpinBox* PreferencesDialog::addMebibytes(QFormLayout& form, const QString& label, const char* name,
                                          int least, int most)
{
    auto* const box = new QSpinBox;
    box->setObjectName(QLatin1String(name));
    box->setRange(least, most);
    box->setSuffix(tr(" MiB"));
    form.addRow(label, box);
    return box;
}

void PreferencesDialog::addThreads()
{
    QFormLayout& form = *addPage(
        tr("Threads"), tr("How many processors conversions and drawing may keep busy. This computer has %1.")
                           .arg(QThread::idealThreadCount()));
    _threads = new QSpinBox;
    _threads->setObjectName(QStringLiteral("Threads"));
    _threads->setRange(0, mostThreads);
    _threads->setSpecialValueText(tr("All"));
    form.addRow(tr("P&rocessors:"), _threads);
    tellVariable(form, "threads", *_threads);
}

void PreferencesDialog::addLook()
{
    QFormLayout& form =
        *addPage(tr("Look"),
                 tr("The colours of all windows. System takes those that are closer to the desktop's own."));
    _look = new QComboBox;
    _look->setObjectName(QStringLiteral("Look"));
    _look->addItem(tr("Dark"), int(LookChoice::Dark));
    _look->addItem(tr("Light"), int(LookChoice::Light));
    _look->addItem(tr("System"), int(LookChoice::System));
    form.addRow(tr("&Colours:"), _look);
}

void PreferencesDialog::addLanguage()
{
    QFormLayout& form = *addPage(
        tr("Language"), tr("The language of windows and messages. It holds from the next start of Gantrel."));
    _language = new QComboBox;
    _language->setObjectName(QStringLiteral("Language"));
    _language->addItem(tr("System"), QString());
    // By their own names, which people find who cannot read the others.
    for (const QString& code : QStringList(QStringLiteral("en")) + TranslatedLanguages())
        _language->addItem(code == QLatin1String("en") ? QStringLiteral("English")
                                                       : QLocale(code).nativeLanguageName(),
                           code);
    form.addRow(tr("&Language:"), _language);
}

QLineEdit* PreferencesDialog::addLine(QFormLayout& form, const QString& label, const char* name)
{
    auto* const line = new QLineEdit;
    line->setObjectName(QLatin1String(name));
    line->setMinimumWidth(36 * fontMetrics().averageCharWidth());
    form.addRow(label, line);
    return line;
}

/// Whoever changed it here would not see anything come of it.
void PreferencesDialog::tellVariable(QFormLayout& form, const char* setting, QWidget& field)
{
    const QString variable = VariableBefore(setting);
    if (variable.isEmpty())
        return;
    field.setEnabled(false);
    form.addRow(
        MakeText(tr("%1 is set in the environment, which goes before what is chosen here.").arg(variable)));
}

void PreferencesDialog::fill(const Preferences& preferences, int page)
{
    switch (page) {
    case Page::Folders:
        return _folders->setFolders(preferences.contentFolders);
    case Page::Author:
        _name->setText(preferences.author.getName());
        _email->setText(preferences.author.getEmail());
        _url->setText(preferences.author.getURL());
        break;
    case Page::Units:
        _lengths->setCurrentIndex(int(preferences.lengths));
        break;
    case Page::Memory:
        _cache->setValue(preferences.pictureCacheMiB);
        _undo->setValue(preferences.undoMiB);
        break;
    case Page::Threads:
        _threads->setValue(preferences.threads);
        break;
    case Page::Look:
        _look->setCurrentIndex(_look->findData(int(preferences.look)));
        break;
    case Page::Language:
        _language->setCurrentIndex(std::max(0, _language->findData(preferences.language)));
        break;
    default:
        break;
    }
}

void PreferencesDialog::resetPage()
{
    // What a variable of the environment sets is not to be changed here.
    Preferences defaults;
    const Preferences present = preferences();
    if (!_folders->isEnabled())
        defaults.contentFolders = present.contentFolders;
    if (!_name->isEnabled())
        defaults.author = present.author;
    if (!_threads->isEnabled())
        defaults.threads = present.threads;
    fill(defaults, _pages->currentIndex());
}

Preferences PreferencesDialog::preferences() const
{
    Preferences chosen;
    chosen.contentFolders = _folders->folders();
    chosen.author = DzAuthor(_name->text().trimmed(), _email->text().trimmed(), _url->text().trimmed());
    chosen.lengths = openhost::LengthUnit(_lengths->currentIndex());
    chosen.pictureCacheMiB = _cache->value();
    chosen.undoMiB = _undo->value();
    chosen.threads = _threads->value();
    chosen.look = LookChoice(_look->currentData().toInt());
    chosen.language = _language->currentData().toString();
    return chosen;
}

} // namespace desktop
