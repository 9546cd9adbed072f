// Trace lines in the host's log.
// SPDX-License-Identifier: MIT

#include "ks_debug.h"

#include "ks_product.h"

#include <QString>

#include <dzapp.h>

namespace kst {

Debug::Debug(std::string_view name) : _name(name)
{
    Log("Entering {}", _name);
}

Debug::~Debug()
{
    Log("Leaving {}", _name);
}

void Debug::Log(std::string_view text)
{
    // Converted here and not through the string library, which may itself want to log.
    const std::string line = fmt::format("{}{}", product::LOG_PREFIX, text);
    dzApp->log(QString::fromUtf8(line.data(), static_cast<int>(line.size())));
    dzApp->flushLogBuffer();
}

} // namespace kst
