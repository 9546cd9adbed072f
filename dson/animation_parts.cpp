// Turning the members of a DSON file into values: animations.
// SPDX-License-Identifier: MIT

#include "parts.h"

#include <algorithm>

namespace dson {

namespace {

struct Key {
    double time, value;
};

/// Between keys along a straight line, before the first and behind the last as they are.
double ValueAtZero(std::vector<Key> keys)
{
    std::stable_sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) { return a.time < b.time; });
    const auto after = std::upper_bound(keys.begin(), keys.end(), 0.0,
                                        [](double time, const Key& k) { return time < k.time; });
    if (after == keys.begin())
        return after->value;
    const Key& before = *std::prev(after);
    if (after == keys.end() || before.time == 0.0)
        return before.value;
    return before.value + (after->value - before.value) * (0.0 - before.time) / (after->time - before.time);
}

} // namespace

std::optional<AnimatedValue> ParseAnimation(const Element& json)
{
    AnimatedValue animation;
    animation.url = Text(json, "url");
    std::vector<Key> keys;
    ForEach(json, "keys", [&](const Element& row) {
        if (!row.is_array())
            return;
        std::optional<double> numbers[2];
        std::size_t index = 0;
        for (const Element item : Items(row))
            if (index < 2)
                numbers[index++] = AsNumber(item);
        if (numbers[0] && numbers[1])
            keys.push_back({*numbers[0], *numbers[1]});
    });
    if (keys.empty() || animation.url.empty())
        return std::nullopt;
    animation.value = ValueAtZero(std::move(keys));
    return animation;
}

} // namespace dson
