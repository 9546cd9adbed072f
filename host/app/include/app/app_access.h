// What the host's rooms need of the application beyond its public face.
// SPDX-License-Identifier: MIT

#pragma once

class DzApp;

namespace openhost {

struct AppParts;

struct AppAccess {
    static AppParts& Parts(const DzApp& app);
};

} // namespace openhost
