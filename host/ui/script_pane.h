// The pane for writing and running scripts.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzpane.h"

class QPlainTextEdit;
class QPushButton;

/// An editor, and below it what a run prints, results in or fails with; a failure marks its line.
class DzScriptPane : public DzPane {
    Q_OBJECT
public:
    DzScriptPane();
    ~DzScriptPane();

    Q_INVOKABLE QString getCode();
    Q_INVOKABLE void setCode(const QString& code);
    Q_INVOKABLE QString getOutput();
    /// The line that the last run failed at, from 1; -1 when there is none or the code has changed since.
    Q_INVOKABLE int getErrorLine() const { return _errorLine; }

public slots:
    /// Returns when the script has ended; false when it failed, was stopped or another run is not over yet.
    bool run();
    void stop();

protected:
    void showEvent(QShowEvent* event) override;

private slots:
    void unmarkLine();

private:
    void build();
    QWidget* makeEditor();
    void markLine(int line);

    QPlainTextEdit* _editor = nullptr; ///< null until it is needed, as the others
    QPlainTextEdit* _output = nullptr;
    QPushButton* _run = nullptr;
    QPushButton* _stop = nullptr;
    bool _isRunning = false;
    int _errorLine = -1;
};
