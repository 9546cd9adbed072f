// Numbers as OBJ texts have them: a whole number of units in the last place.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace geometry {

class ObjDecimal {
public:
    /// Up to so many the product of a float and their power of ten is exact below the limit, and so is its
    /// rounding.
    static constexpr int mostDecimals = 9;
    static constexpr double limit = 0x1p53;

    explicit ObjDecimal(int decimals) : _decimals(decimals)
    {
        for (int d = 0; d < decimals; ++d)
            _power *= 10;
    }

    int decimals() const { return _decimals; }
    std::uint64_t wholePower() const { return _power; }
    double power() const { return static_cast<double>(_power); }

    /// The nearest whole number of units in the last place, from the middle the even one.
    /// @param value  not negative
    double scaled(double value) const
    {
        constexpr double allWhole = 0x1p52; // from here on; below, the sum has no room for a fraction
        const double product = value * power();
        return product < allWhole ? (product + allWhole) - allWhole : product;
    }

private:
    int _decimals;
    std::uint64_t _power = 1;
};

} // namespace geometry
