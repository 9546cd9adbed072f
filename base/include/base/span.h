// A view of a contiguous array; C++17 has no std::span.
// SPDX-License-Identifier: MIT

#pragma once

#include <cassert>
#include <cstddef>
#include <type_traits>
#include <vector>

namespace base {

/// A pointer and a length; cheap to copy. The owner of the elements must outlive it. An index out of range is
/// a programming error, which an assertion finds.
template <class T>
class Span {
public:
    constexpr Span() = default;
    constexpr Span(T* data, std::size_t size) : _data(data), _size(size) {}

    template <class U, class = std::enable_if_t<std::is_convertible_v<U (*)[], T (*)[]>>>
    constexpr Span(const Span<U>& other) : _data(other.data()), _size(other.size())
    {
    }
    template <class U, class = std::enable_if_t<std::is_convertible_v<const U (*)[], T (*)[]>>>
    Span(const std::vector<U>& owner) : _data(owner.data()), _size(owner.size())
    {
    }
    template <class U, class = std::enable_if_t<std::is_convertible_v<U (*)[], T (*)[]>>>
    Span(std::vector<U>& owner) : _data(owner.data()), _size(owner.size())
    {
    }

    constexpr T* data() const { return _data; }
    constexpr std::size_t size() const { return _size; }
    constexpr bool empty() const { return _size == 0; }
    constexpr T* begin() const { return _data; }
    constexpr T* end() const { return _data + _size; }
    constexpr T& operator[](std::size_t i) const
    {
        assert(i < _size);
        return _data[i];
    }
    constexpr Span subspan(std::size_t first, std::size_t count) const
    {
        assert(first + count <= _size);
        return Span(_data + first, count);
    }

private:
    T* _data = nullptr;
    std::size_t _size = 0;
};

} // namespace base
