// What scripts print, for those who want to read along.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <functional>

namespace openhost {

/// Hears every line that scripts print, until its end. Of several the last one made hears it.
class ScriptOutput {
public:
    explicit ScriptOutput(std::function<void(const QString&)> hear);
    ~ScriptOutput();
    ScriptOutput(const ScriptOutput&) = delete;
    ScriptOutput& operator=(const ScriptOutput&) = delete;

    static void Tell(const QString& line);

private:
    std::function<void(const QString&)> _hear;
    ScriptOutput* _outer;
};

} // namespace openhost
