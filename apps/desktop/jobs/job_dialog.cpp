// What a conversion of the list of jobs is to do.
// SPDX-License-Identifier: MIT

#include "job_dialog.h"

#include "../content_folders.h"
#include "../desktop_settings.h"
#include "job.h"
#include "openhost/plain_tip.h"

#include <dzapp.h>
#include <dzcontentmgr.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace desktop {

namespace {

constexpr int mostLevels = 5; ///< as the command line takes them

/// As this program sees it: the conversion runs in another folder.
QString AbsoluteName(const QString& typed)
{
    const QString name = typed.trimmed();
    return name.isEmpty() ? name : QFileInfo(name).absoluteFilePath();
}

bool IsYes(const QJsonObject& cells, const char* name)
{
    return cells.value(QLatin1String(name)).toString() == QLatin1String("yes");
}

QCheckBox* MakeBox(const QString& text, const char* name)
{
    auto* const box = new QCheckBox(text);
    box->setObjectName(QLatin1String(name));
    return box;
}

} // namespace

JobDialog::JobDialog(QWidget* parent, const QStringList& sources) : QDialog(parent)
{
    setObjectName(QStringLiteral("JobDialog"));
    setWindowTitle(sources.isEmpty() ? tr("What Rows Leave Open") : tr("Conversion Settings"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    auto* const form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    addFigures(*form, sources);
    addMorphs(*form);
    addSaving(*form);
    _missing = new QLabel;
    _missing->setWordWrap(true);
    _missing->setMinimumHeight(2 * fontMetrics().lineSpacing());
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    _ok = buttons->button(QDialogButtonBox::Ok);
    connect(buttons, SIGNAL(accepted()), SLOT(takeChoice()));
    connect(buttons, SIGNAL(rejected()), SLOT(reject()));
    auto* const column = new QVBoxLayout(this);
    column->addLayout(form, 1);
    column->addWidget(_missing);
    column->addWidget(buttons);

    QJsonObject proposed = RememberedJobCells();
    const MorphPlace place = RememberedMorphPlace();
    for (const auto& [name, text] : {std::pair{"save-library", place.contentFolder},
                                     std::pair{"vendor", place.vendor}, std::pair{"product", place.product}})
        if (proposed.value(QLatin1String(name)).toString().isEmpty())
            proposed.insert(QLatin1String(name), text);
    if (proposed.value(QLatin1String("vendor")).toString().isEmpty())
        proposed.insert(QStringLiteral("vendor"), dzApp->getCurrentAuthor().getName());
    setCells(proposed);
    _others = {};
}

void JobDialog::addFigures(QFormLayout& form, const QStringList& sources)
{
    if (!sources.isEmpty()) {
        auto* const shown = new QLabel(sources.size() == 1 ? QDir::toNativeSeparators(sources.first())
                                                           : tr("%n figures", nullptr, sources.size()));
        shown->setTextFormat(Qt::PlainText);
        shown->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        shown->setToolTip(openhost::PlainTip(sources.join(QLatin1Char('\n'))));
        shown->setMinimumWidth(60 * fontMetrics().averageCharWidth());
        shown->setText(fontMetrics().elidedText(shown->text(), Qt::ElideLeft, shown->minimumWidth()));
        form.addRow(tr("Source:"), shown);
    }
    addDials(form);
    _target = new QLineEdit;
    _target->setObjectName(QStringLiteral("Target"));
    auto* const label = new QLabel(tr("&Target:"));
    label->setBuddy(_target);
    form.addRow(label, withBrowsing(*_target, tr("Browse for the target"), SLOT(browseTarget())));
    if (sources.size() != 1)
        return;
    _name = addLine(form, tr("&Name:"), "Name");
    _name->setPlaceholderText(tr("That of the figure"));
}

void JobDialog::addDials(QFormLayout& form)
{
    _dials = new QPlainTextEdit;
    _dials->setObjectName(QStringLiteral("SourceDials"));
    _dials->setPlaceholderText(tr("Name=value, each on a line, such as Smile=50%"));
    _dials->setTabChangesFocus(true);
    const int around = 2 * (_dials->frameWidth() + int(_dials->document()->documentMargin()));
    _dials->setFixedHeight(2 * fontMetrics().lineSpacing() + around);
    connect(_dials, SIGNAL(textChanged()), SLOT(showMissing()));
    auto* const label = new QLabel(tr("Source's &dials:"));
    label->setBuddy(_dials);
    form.addRow(label, _dials);
}

QHBoxLayout* JobDialog::withBrowsing(QWidget& field, const QString& name, const char* slot)
{
    auto* const browse = new QPushButton(tr("Browse..."));
    browse->setAccessibleName(name);
    browse->setAutoDefault(false);
    connect(browse, SIGNAL(clicked()), slot);
    auto* const row = new QHBoxLayout;
    row->addWidget(&field, 1);
    row->addWidget(browse);
    if (auto* const line = qobject_cast<QLineEdit*>(&field))
        connect(line, SIGNAL(textChanged(QString)), SLOT(showMissing()));
    return row;
}

void JobDialog::addMorphs(QFormLayout& form)
{
    auto* const row = new QHBoxLayout;
    row->addWidget(_full = MakeBox(tr("&Full figure"), "FullMorph"));
    row->addWidget(_head = MakeBox(tr("&Head"), "HeadMorph"));
    row->addWidget(_body = MakeBox(tr("&Body"), "BodyMorph"));
    row->addStretch();
    for (QCheckBox* const box : {_full, _head, _body})
        connect(box, SIGNAL(toggled(bool)), SLOT(showMissing()));
    form.addRow(tr("Morphs:"), row);
    _resolution = new QComboBox;
    _resolution->setObjectName(QStringLiteral("Resolution"));
    _resolution->addItem(tr("Base"), QStringLiteral("base"));
    _resolution->addItem(tr("Subdivided"), QStringLiteral("subd"));
    connect(_resolution, SIGNAL(currentIndexChanged(int)), SLOT(showMissing()));
    form.addRow(tr("&Resolution:"), _resolution);
    _level = new QSpinBox;
    _level->setObjectName(QStringLiteral("SubdivisionLevel"));
    _level->setRange(0, mostLevels);
    _level->setSpecialValueText(tr("As the source's file says"));
    form.addRow(tr("Subdivision &level:"), _level);
    form.addRow(QString(), _joints = MakeBox(tr("&Joints follow the new shape"), "AdjustRig"));
    form.addRow(QString(),
                _registers = MakeBox(tr("Register the target's neutral sh&ape first"), "Register"));
}

void JobDialog::addSaving(QFormLayout& form)
{
    _library = new QComboBox;
    _library->setObjectName(QStringLiteral("Library"));
    _library->setEditable(true);
    _library->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    const DzContentMgr& content = *dzApp->getContentMgr();
    for (int i = 0; i < content.getNumContentDirectories(); ++i)
        _library->addItem(content.getContentDirectoryPath(i));
    connect(_library, SIGNAL(editTextChanged(QString)), SLOT(showMissing()));
    auto* const label = new QLabel(tr("&Save into library:"));
    label->setBuddy(_library);
    form.addRow(label, withBrowsing(*_library, tr("Browse for the library"), SLOT(browseLibrary())));
    _vendor = addLine(form, tr("&Vendor:"), "Vendor");
    _product = addLine(form, tr("&Product:"), "Product");
    form.addRow(QString(), _compress = MakeBox(tr("&Compress files"), "Compress"));
    form.addRow(QString(), _overwrite = MakeBox(tr("Replace saved &morphs of the same name"), "Overwrite"));
}

QLineEdit* JobDialog::addLine(QFormLayout& form, const QString& label, const char* name)
{
    auto* const line = new QLineEdit;
    line->setObjectName(QLatin1String(name));
    connect(line, SIGNAL(textChanged(QString)), SLOT(showMissing()));
    form.addRow(label, line);
    return line;
}

void JobDialog::setCells(const QJsonObject& cells)
{
    const auto text = [&cells](const char* name) { return cells.value(QLatin1String(name)).toString(); };
    _others = cells;
    _target->setText(text("target"));
    const QJsonValue dials = cells.value(QLatin1String("dial"));
    _dials->setPlainText(dials.isArray() ? TextsIn(dials).join(QLatin1Char('\n'))
                                         : dials.toString().replace(QLatin1Char(';'), QLatin1Char('\n')));
    if (_name)
        _name->setText(text("name"));
    const QString jobs = cells.contains(QLatin1String("jobs")) ? text("jobs") : QStringLiteral("head,body");
    _full->setChecked(jobs.contains(QLatin1String("full")));
    _head->setChecked(jobs.contains(QLatin1String("head")));
    _body->setChecked(jobs.contains(QLatin1String("body")));
    _resolution->setCurrentIndex(text("resolution") == QLatin1String("subd") ? 1 : 0);
    _level->setValue(text("subd").toInt());
    _joints->setChecked(IsYes(cells, "adjust-rig"));
    _registers->setChecked(IsYes(cells, "register"));
    if (!text("save-library").isEmpty())
        _library->setEditText(text("save-library"));
    _vendor->setText(text("vendor"));
    _product->setText(text("product"));
    _compress->setChecked(IsYes(cells, "compress"));
    _overwrite->setChecked(IsYes(cells, "overwrite"));
    showMissing();
}

QJsonObject JobDialog::cells() const
{
    QJsonObject cells = _others;
    const auto put = [&cells](const char* name, const QString& text) {
        if (text.isEmpty())
            cells.remove(QLatin1String(name));
        else
            cells.insert(QLatin1String(name), text);
    };
    const auto yes = [](const QCheckBox& box) { return box.isChecked() ? QStringLiteral("yes") : QString(); };
    QStringList jobs;
    for (const auto& [box, keyword] :
         {std::pair{_full, "full"}, std::pair{_head, "head"}, std::pair{_body, "body"}})
        if (box->isChecked())
            jobs.append(QLatin1String(keyword));
    if (const QStringList set = dials(); set.isEmpty())
        cells.remove(QStringLiteral("dial"));
    else
        cells.insert(QStringLiteral("dial"), QJsonArray::fromStringList(set));
    const bool isSubdivided = _resolution->currentIndex() == 1;
    put("target", AbsoluteName(_target->text()));
    if (_name)
        put("name", _name->text());
    put("jobs", jobs.join(QLatin1Char(',')));
    put("resolution", _resolution->currentData().toString());
    put("subd", isSubdivided && _level->value() > 0 ? QString::number(_level->value()) : QString());
    put("adjust-rig", yes(*_joints));
    put("register", yes(*_registers));
    put("save-library", AbsoluteName(_library->currentText()));
    put("vendor", _vendor->text().trimmed());
    put("product", _product->text().trimmed());
    put("compress", yes(*_compress));
    put("overwrite", yes(*_overwrite));
    return cells;
}

QStringList JobDialog::dials() const
{
    QStringList dials;
    for (const QString& line : _dials->toPlainText().split(QLatin1Char('\n')))
        if (!line.trimmed().isEmpty())
            dials.append(line.trimmed());
    return dials;
}

void JobDialog::browseTarget()
{
    const QString present = _target->text();
    const QString file = QFileDialog::getOpenFileName(
        this, tr("Target"), present.isEmpty() ? FirstContentFolder() : QFileInfo(present).path(),
        tr("Figures (*.duf *.dsf);;All files (*)"));
    if (!file.isEmpty())
        _target->setText(file);
}

void JobDialog::browseLibrary()
{
    const QString folder =
        QFileDialog::getExistingDirectory(this, tr("Library for the Morphs"), _library->currentText());
    if (!folder.isEmpty())
        _library->setEditText(folder);
}

QString JobDialog::missing() const
{
    if (!QFileInfo(_target->text().trimmed()).isFile())
        return tr("Choose the target, a Genesis 9 figure's file.");
    for (const QString& dial : dials())
        if (dial.indexOf(QLatin1Char('=')) < 1)
            return tr("\u201C%1\u201D sets no dial: give its name and a value, such as Smile=50%.").arg(dial);
    if (!_full->isChecked() && !_head->isChecked() && !_body->isChecked())
        return tr("Choose at least one morph.");
    if (_library->currentText().trimmed().isEmpty())
        return tr("Choose the library that the morphs are saved into.");
    if (_vendor->text().trimmed().isEmpty() || _product->text().trimmed().isEmpty())
        return tr("Give vendor and product, which name the folders of the saved morphs.");
    return QString();
}

void JobDialog::showMissing()
{
    if (!_ok)
        return; // not all is there yet
    _level->setEnabled(_resolution->currentIndex() == 1);
    _missing->setText(missing());
    _ok->setEnabled(missing().isEmpty());
}

void JobDialog::takeChoice()
{
    QJsonObject kept = cells();
    for (const char* const own : {"name", "source", "dial"})
        kept.remove(QLatin1String(own));
    RememberJobCells(kept);
    accept();
}

} // namespace desktop
