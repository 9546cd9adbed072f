// Who is told and asked what a person should know or decide.
// SPDX-License-Identifier: MIT

#include "openhost/attendant.h"

#include "app/app_access.h"
#include "app/current_attendant.h"
#include "app/host_log.h"
#include "dzapp.h"

namespace openhost {

Attendant::~Attendant() = default;

// What was found is in the log already; the loader writes it in any case.
void Attendant::tellMissingFiles(const QStringList&) {}
void Attendant::tellOpenError(const QString&, const QString&) {}
void Attendant::tellDuplicateFormulas(const QStringList&) {}
void Attendant::beforeProgress() {}
void Attendant::beforeReading() {}

bool Attendant::mayReplaceScene(const QString&)
{
    return true;
}

std::optional<bool> Attendant::mayReplaceFiles(const QStringList&)
{
    return std::nullopt;
}

bool Attendant::mayExceedLimits(const QStringList&)
{
    return false;
}

bool Attendant::chooseDFormOptions(DFormLoadOptions& options)
{
    LogNote(QStringLiteral("not shown without display: D-Former Load Options; %1 is added as it is")
                .arg(options.name));
    return true;
}

bool Attendant::chooseFileOptions(const QString&, const std::vector<OptionRow>&, DzFileIOSettings&)
{
    return true;
}

std::optional<QString> Attendant::chooseFileToSave(const QString&, const QString&)
{
    return std::nullopt;
}

Attendant& CurrentAttendant()
{
    static Attendant nobody;
    Attendant* const attendant = dzApp ? AppAccess::AttendantOf(*dzApp) : nullptr;
    return attendant ? *attendant : nobody;
}

} // namespace openhost
