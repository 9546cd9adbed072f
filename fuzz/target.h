// What is fed with the bytes of strangers.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

/// One way in. Each source file of this folder adds one.
struct Target {
    const char* name;
    /// What well-meaning programs write.
    std::vector<std::string> (*seeds)();
    /// Reads the bytes or refuses them as users see it; whatever else happens is a finding.
    void (*feed)(std::string_view bytes);
};

/// Adds the target to those that FindTarget knows.
class Registration {
public:
    explicit Registration(const Target& target);
};

const std::vector<Target>& Targets();
/// Null for none of that name.
const Target* FindTarget(std::string_view name);

/// Ends the program with the law that the present input broke.
void Demand(bool holds, const char* law);

/// A folder that goes with the program.
const std::filesystem::path& ScratchFolder();
/// Replaces the file of that name in it.
std::filesystem::path WriteScratch(const std::string& name, std::string_view bytes);

} // namespace fuzz
