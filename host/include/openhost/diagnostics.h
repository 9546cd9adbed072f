// What the host has to say about files, plug-ins and its own work.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"

#include <QMetaType>
#include <QObject>

#include <string>
#include <unordered_set>

Q_DECLARE_METATYPE(base::Diagnostic)

namespace openhost {

/// Tells everybody who connects. The running application has one, DzApp::diagnostics(); its log is a reader
/// like others.
class DiagnosticsHub : public QObject {
    Q_OBJECT
public:
    explicit DiagnosticsHub(QObject* parent = nullptr);

    void report(const base::Diagnostic& diagnostic);

signals:
    void reported(const base::Diagnostic& diagnostic);
};

/// Keeps what is reported as long as it lives, each once.
class DiagnosticsCollector : public QObject {
    Q_OBJECT
public:
    explicit DiagnosticsCollector(DiagnosticsHub& hub);

    const base::Diagnostics& all() const { return _all; }

private slots:
    void keep(const base::Diagnostic& diagnostic);

private:
    base::Diagnostics _all;
    std::unordered_set<std::string> _kept; ///< severities and lines of all
};

/// To the hub of the running application; to stderr while there is none.
void Report(const base::Diagnostic& diagnostic);
void Report(const base::Diagnostics& diagnostics);

} // namespace openhost
