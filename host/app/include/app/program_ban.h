// Whether the host may start other programs for whoever is at work.
// SPDX-License-Identifier: MIT

#pragma once

namespace openhost {

/// As long as one lives, the host starts no other program.
class ProgramBan {
public:
    ProgramBan() { ++Count(); }
    ~ProgramBan() { --Count(); }
    ProgramBan(const ProgramBan&) = delete;
    ProgramBan& operator=(const ProgramBan&) = delete;

    static bool IsSet() { return Count() > 0; }

private:
    static int& Count()
    {
        static int count = 0;
        return count;
    }
};

} // namespace openhost
