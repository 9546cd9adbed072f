// Mouse and keys of the X server, as a person at the machine moves them.
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>
#include <string>

/// The events go through the server, so that the window manager and the toolkit treat them as real ones. They
/// are gathered until they are sent, and so follow each other at once: two clicks make a double click however
/// busy the machine is. An object belongs to one thread.
class VirtualInput {
public:
    enum class Key { Control, Alt, Return, Escape, Tab, Space, Right, End };

    /// On the display that the environment names. Throws std::runtime_error when it cannot be reached, or
    /// does not let events be made.
    VirtualInput();
    ~VirtualInput();

    /// Until the server has them all.
    void send();

    /// Pixels of the whole screen.
    void moveTo(int x, int y);
    void pressButton(); ///< the left one
    void releaseButton();
    void pressKey(Key key);
    void releaseKey(Key key);
    /// Presses and releases the keys of the text one after the other. Throws std::runtime_error for a letter
    /// that no key makes alone or with Shift.
    void type(const std::string& text);

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};
