// Short stand-ins for long contents: equal ones have the same, and others as good as never.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace geometry {

/// 128 bits, so that even among billions of contents no two are expected to share one. Not safe against
/// somebody who searches for such a pair.
struct Fingerprint {
    std::uint64_t low = 0, high = 0;

    bool operator==(const Fingerprint& other) const { return low == other.low && high == other.high; }
};

/// Takes a content piece by piece; how it is cut makes no difference.
class Fingerprinter {
public:
    Fingerprinter();
    ~Fingerprinter();

    void add(const void* bytes, std::size_t size);
    template <class List>
    void addAll(const List& list)
    {
        add(list.data(), list.size() * sizeof(*list.data()));
    }
    Fingerprint result() const; ///< of all that has been added

private:
    struct State;
    std::unique_ptr<State> _state;
};

} // namespace geometry
