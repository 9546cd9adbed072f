// Transfers between figures whose features lie beside each other.
// SPDX-License-Identifier: MIT

#pragma once

namespace openhost {

/// As long as one lives, anywhere in the process, the Transfer Utility registers the target's neutral shape
/// to the source's before it matches them (geometry::MatchOptions::registersFeatures), which it does not do
/// by itself. For the thread of the scene only.
class RegisteredTransfers {
public:
    RegisteredTransfers();
    ~RegisteredTransfers();
    RegisteredTransfers(const RegisteredTransfers&) = delete;
    RegisteredTransfers& operator=(const RegisteredTransfers&) = delete;
};

} // namespace openhost
