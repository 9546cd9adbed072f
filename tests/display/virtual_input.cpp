// Mouse and keys of the X server, as a person at the machine moves them.
// SPDX-License-Identifier: MIT

#include "tests/display/virtual_input.h"

#include <stdexcept>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace {

KeySym SymbolOf(VirtualInput::Key key)
{
    switch (key) {
    case VirtualInput::Key::Control:
        return XK_Control_L;
    case VirtualInput::Key::Alt:
        return XK_Alt_L;
    case VirtualInput::Key::Return:
        return XK_Return;
    case VirtualInput::Key::Escape:
        return XK_Escape;
    case VirtualInput::Key::Tab:
        return XK_Tab;
    case VirtualInput::Key::Space:
        return XK_space;
    case VirtualInput::Key::Right:
        return XK_Right;
    case VirtualInput::Key::End:
        return XK_End;
    }
    throw std::logic_error("unknown key");
}

} // namespace

struct VirtualInput::Impl {
    Display* display = XOpenDisplay(nullptr);

    ~Impl()
    {
        if (display)
            XCloseDisplay(display);
    }

    void sendKey(KeySym symbol, bool isDown) const
    {
        XTestFakeKeyEvent(display, XKeysymToKeycode(display, symbol), isDown ? True : False, CurrentTime);
    }
    void sendButton(bool isDown) const
    {
        XTestFakeButtonEvent(display, 1, isDown ? True : False, CurrentTime);
    }
    void typeLetter(KeySym symbol) const
    {
        const KeyCode key = XKeysymToKeycode(display, symbol);
        const bool isPlain = key != 0 && XkbKeycodeToKeysym(display, key, 0, 0) == symbol;
        if (!isPlain && (key == 0 || XkbKeycodeToKeysym(display, key, 0, 1) != symbol))
            throw std::runtime_error("no key makes one of the letters");
        if (!isPlain)
            sendKey(XK_Shift_L, true);
        sendKey(symbol, true);
        sendKey(symbol, false);
        if (!isPlain)
            sendKey(XK_Shift_L, false);
    }
};

VirtualInput::VirtualInput() : _impl(new Impl)
{
    int event = 0, error = 0, major = 0, minor = 0;
    if (!_impl->display || !XTestQueryExtension(_impl->display, &event, &error, &major, &minor))
        throw std::runtime_error("there is no X server that lets events be made");
    // On a busy machine the time between a key's press and its release may be long enough for repeating.
    XAutoRepeatOff(_impl->display);
}

VirtualInput::~VirtualInput() = default;

void VirtualInput::send()
{
    XSync(_impl->display, False);
}

void VirtualInput::moveTo(int x, int y)
{
    XTestFakeMotionEvent(_impl->display, -1, x, y, CurrentTime);
}

void VirtualInput::pressButton()
{
    _impl->sendButton(true);
}

void VirtualInput::releaseButton()
{
    _impl->sendButton(false);
}

void VirtualInput::pressKey(Key key)
{
    _impl->sendKey(SymbolOf(key), true);
}

void VirtualInput::releaseKey(Key key)
{
    _impl->sendKey(SymbolOf(key), false);
}

void VirtualInput::type(const std::string& text)
{
    for (const unsigned char letter : text)
        _impl->typeLetter(letter); // the symbols of Latin 1 have its codes
}
