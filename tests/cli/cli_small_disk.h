// A disk that a test can fill.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>

/// A disk of its own at a folder, in memory, which this process sees and those that it starts later, and
/// nobody else; it ends with this.
class SmallDisk {
public:
    /// Without it the reason, where the system lets this user have none.
    explicit SmallDisk(std::string folder);
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    const std::string& whyNot() const { return _whyNot; } ///< empty where it is there
    std::size_t usedBlocks() const;
    /// Takes room away until no more than so many blocks are free.
    void leaveFree(std::size_t blocks) const;
    void makeRoom() const;

private:
    std::string ballast() const;

    std::string _folder, _whyNot;
};
