// Many changes of properties that are told as one.
// SPDX-License-Identifier: MIT

#pragma once

namespace openhost {

/// While it lives, changed numeric properties have their new values, but neither their owners nor anyone else
/// hears of it; when the outermost one ends, each that changed and each that depends on it is told once.
///
/// What drives a chain of n dials tells n of them, so that n changes one by one would take n times n steps.
/// Shapes and places, which owners keep, are not to be asked for meanwhile.
class ChangesTogether {
public:
    ChangesTogether();
    ~ChangesTogether();
    ChangesTogether(const ChangesTogether&) = delete;
    ChangesTogether& operator=(const ChangesTogether&) = delete;
};

} // namespace openhost
