// Handing on what the host has to say.
// SPDX-License-Identifier: MIT

#include "openhost/diagnostics.h"

#include <algorithm>

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
    if (std::find(_all.begin(), _all.end(), diagnostic) == _all.end())
        _all.push_back(diagnostic);
}

void Report(const base::Diagnostics& diagnostics)
{
    for (const base::Diagnostic& diagnostic : diagnostics)
        Report(diagnostic);
}

} // namespace openhost
