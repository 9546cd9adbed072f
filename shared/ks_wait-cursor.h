// The wait cursor for a scope.
// SPDX-License-Identifier: MIT

#pragma once

namespace kst {

/// The wait cursor for a scope; restored when it ends, also on the way of an exception.
class WaitCursor {
public:
    /// @param busyOnly  the arrow with an hourglass, which says that the user may go on
    explicit WaitCursor(bool busyOnly = false);
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

    void again(); ///< pushes the cursor again after restore()
    void restore();

private:
    bool _busyOnly;
    bool _pushed = false;
};

} // namespace kst
