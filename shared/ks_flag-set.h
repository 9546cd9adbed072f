// A set of enumerators held as bits.
// SPDX-License-Identifier: MIT

#pragma once

namespace kst {

/// A value, cheap to copy. E declares its members as powers of two; a member that joins several bits counts
/// as contained when any of them is. Bits that E does not name are kept as they are.
template <class E>
class FlagSet {
public:
    FlagSet() = default; ///< empty
    FlagSet(E flag) : _bits(static_cast<int>(flag)) {}
    static FlagSet fromInt(int bits)
    {
        FlagSet set;
        set._bits = bits;
        return set;
    }

    int toInt() const { return _bits; }
    bool empty() const { return _bits == 0; }
    bool test(E flag) const { return (_bits & static_cast<int>(flag)) != 0; }
    void set(E flag) { _bits |= static_cast<int>(flag); }
    void clear(E flag) { _bits &= ~static_cast<int>(flag); }

    FlagSet& operator|=(FlagSet other)
    {
        _bits |= other._bits;
        return *this;
    }

    friend FlagSet operator|(FlagSet a, FlagSet b) { return fromInt(a._bits | b._bits); }
    friend FlagSet operator&(FlagSet a, FlagSet b) { return fromInt(a._bits & b._bits); }
    friend bool operator==(FlagSet a, FlagSet b) { return a._bits == b._bits; }
    friend bool operator!=(FlagSet a, FlagSet b) { return a._bits != b._bits; }

private:
    int _bits = 0;
};

} // namespace kst
