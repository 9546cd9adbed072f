// A growable array.
// SPDX-License-Identifier: MIT

#pragma once

#include <cassert>
#include <vector>

template <class T>
class DzTArray {
public:
    void append(const T& value) { _values.push_back(value); }
    int size() const { return static_cast<int>(_values.size()); }
    bool isEmpty() const { return _values.empty(); }
    void clear() { _values.clear(); }
    T& operator[](int i)
    {
        assert(i >= 0 && i < size());
        return _values[static_cast<std::size_t>(i)];
    }
    const T& operator[](int i) const
    {
        assert(i >= 0 && i < size());
        return _values[static_cast<std::size_t>(i)];
    }

private:
    std::vector<T> _values;
};

typedef DzTArray<int> DzIntArray;
