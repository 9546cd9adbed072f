// Handing on what the host has to say.
// SPDX-License-Identifier: MIT

#include "openhost/diagnostics.h"

namespace openhost {

DiagnosticsHub::DiagnosticsHub(QObject* parent) : QObject(parent)
{
    qRegisterMetaType<base::Diagnostic>("base::Diagnostic");
}

void DiagnosticsHub::report(const base::Diagnostic& diagnostic)
{
    emit reported(diagnostic);
}

DiagnosticsCollector::DiagnosticsCollector(DiagnosticsHub& hub)
{
    connect(&hub, SIGNAL(reported(base::Diagnostic)), SLOT(keep(base::Diagnostic)));
}

void DiagnosticsCollector::keep(const base::Diagnostic& diagnostic)
{
    // A large library can have as many as it has files.
    if (_kept.insert(base::NameOf(diagnostic.severity) + (' ' + base::ToLine(diagnostic))).second)
        _all.push_back(diagnostic);
}

void Report(const base::Diagnostics& diagnostics)
{
    for (const base::Diagnostic& diagnostic : diagnostics)
        Report(diagnostic);
}

} // namespace openhost
