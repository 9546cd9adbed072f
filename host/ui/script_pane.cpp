// The pane for writing and running scripts.
// SPDX-License-Identifier: MIT

#include "script_pane.h"

#include "dzscript.h"
#include "openhost/script_bounds.h"
#include "script/script_output.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSplitter>
#include <QTextBlock>
#include <QVBoxLayout>

namespace {

/// Letters of one width; the size is left to be the usual one.
QFont CodeFont()
{
    QFont font;
    font.setFamily(QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
    font.setStyleHint(QFont::Monospace);
    return font;
}

QPlainTextEdit* MakeTextField(const char* name)
{
    auto* const field = new QPlainTextEdit;
    field->setObjectName(QLatin1String(name));
    field->setAccessibleName(DzScriptPane::tr(name));
    field->setFont(CodeFont());
    return field;
}

} // namespace

DzScriptPane::DzScriptPane() : DzPane(QLatin1String(QT_TRANSLATE_NOOP("openhost::Panes", "Script IDE"))) {}
DzScriptPane::~DzScriptPane() = default;

void DzScriptPane::showEvent(QShowEvent* event)
{
    build();
    DzPane::showEvent(event);
}

void DzScriptPane::build()
{
    if (_editor)
        return;
    _output = MakeTextField("Output");
    _output->setReadOnly(true);
    _output->setPlaceholderText(tr("Output"));
    auto* const splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(makeEditor());
    splitter->addWidget(_output);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(splitter);
}

QWidget* DzScriptPane::makeEditor()
{
    auto* const box = new QWidget;
    _editor = MakeTextField("Code");
    _editor->setLineWrapMode(QPlainTextEdit::NoWrap);
    _editor->setTabStopDistance(4.0 * _editor->fontMetrics().horizontalAdvance(QLatin1Char(' ')));
    _run = new QPushButton(tr("Run"));
    _stop = new QPushButton(tr("Stop"));
    _stop->setEnabled(false);
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(_run);
    buttons->addWidget(_stop);
    buttons->addStretch(1);
    auto* const layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(buttons);
    layout->addWidget(_editor);
    connect(_run, SIGNAL(clicked()), SLOT(run()));
    connect(_stop, SIGNAL(clicked()), SLOT(stop()));
    connect(_editor, SIGNAL(textChanged()), SLOT(unmarkLine()));
    return box;
}

QString DzScriptPane::getCode()
{
    build();
    return _editor->toPlainText();
}

void DzScriptPane::setCode(const QString& code)
{
    build();
    _editor->setPlainText(code);
}

QString DzScriptPane::getOutput()
{
    build();
    return _output->toPlainText();
}

bool DzScriptPane::run()
{
    build();
    if (_isRunning)
        return false;
    unmarkLine();
    _output->clear();
    _isRunning = true;
    _run->setEnabled(false);
    _stop->setEnabled(true);
    DzScript script;
    script.setCode(_editor->toPlainText());
    const QPointer<DzScriptPane> guard(this); // a script may end everything
    const openhost::ScriptOutput output([guard](const QString& line) {
        if (guard)
            guard->_output->appendPlainText(line);
    });
    const openhost::ScriptBounds bounds; // what is tried out here often comes from strangers
    const bool succeeded = script.execute();
    if (!guard)
        return succeeded;
    _isRunning = false;
    _run->setEnabled(true);
    _stop->setEnabled(false);
    if (!succeeded) {
        // Of a file that the code includes.
        const QString file =
            script.errorFile().isEmpty() ? QString() : script.errorFile() + QStringLiteral(", ");
        const QString where =
            script.errorLine() > 0
                ? QStringLiteral("%1line %2: ").arg(file, QString::number(script.errorLine()))
                : QString();
        _output->appendPlainText(where + script.errorMessage());
        if (file.isEmpty())
            markLine(script.errorLine());
    } else if (script.result().isValid()) {
        _output->appendPlainText(QStringLiteral("= ") + script.result().toString());
    }
    return succeeded;
}

void DzScriptPane::stop()
{
    if (_isRunning)
        DzScript::stopAll();
}

void DzScriptPane::markLine(int line)
{
    const QTextBlock block = _editor->document()->findBlockByNumber(line - 1);
    if (line < 1 || !block.isValid())
        return;
    _errorLine = line;
    QTextEdit::ExtraSelection mark;
    mark.cursor = QTextCursor(block);
    mark.format.setProperty(QTextFormat::FullWidthSelection, true);
    // Red over the background of either look.
    mark.format.setBackground(QColor(220, 60, 50, 110));
    _editor->setExtraSelections({mark});
    _editor->setTextCursor(mark.cursor);
    _editor->centerCursor();
}

void DzScriptPane::unmarkLine()
{
    _errorLine = -1;
    _editor->setExtraSelections({});
}
