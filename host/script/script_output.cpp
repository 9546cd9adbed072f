// What scripts print, for those who want to read along.
// SPDX-License-Identifier: MIT

#include "script/script_output.h"

#include <utility>

namespace openhost {

namespace {

ScriptOutput* g_innermost = nullptr;

} // namespace

ScriptOutput::ScriptOutput(std::function<void(const QString&)> hear)
    : _hear(std::move(hear)), _outer(std::exchange(g_innermost, this))
{
}

ScriptOutput::~ScriptOutput()
{
    g_innermost = _outer;
}

void ScriptOutput::Tell(const QString& line)
{
    if (g_innermost)
        g_innermost->_hear(line);
}

} // namespace openhost
