// What the host's rooms need of the application beyond its public face.
// SPDX-License-Identifier: MIT

#pragma once

class DzApp;

namespace openhost {

class Attendant;
class HostEvents;
struct AppParts;

struct AppAccess {
    static AppParts& Parts(const DzApp& app);
    static HostEvents& Events(const DzApp& app);
    /// Borrowed; null for nobody.
    static Attendant*& AttendantOf(const DzApp& app);
};

} // namespace openhost
