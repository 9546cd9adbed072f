// A set of enumerators held as bits.
// SPDX-License-Identifier: MIT

#pragma once

namespace kst {

/// E declares its members as powers of two.
template <class E>
class FlagSet {
public:
    FlagSet() = default;
    FlagSet(E flag) : _bits(static_cast<int>(flag)) {}
    static FlagSet fromInt(int bits)
    {
        FlagSet set;
        set._bits = bits;
        return set;
    }

    int toInt() const { return _bits; }
    bool test(E flag) const { return (_bits & static_cast<int>(flag)) != 0; }
    void set(E flag) { _bits |= static_cast<int>(flag); }
    void clear(E flag) { _bits &= ~static_cast<int>(flag); }

    friend FlagSet operator|(FlagSet a, FlagSet b) { return fromInt(a._bits | b._bits); }
    friend bool operator==(FlagSet a, FlagSet b) { return a._bits == b._bits; }
    friend bool operator!=(FlagSet a, FlagSet b) { return a._bits != b._bits; }

private:
    int _bits = 0;
};

} // namespace kst
