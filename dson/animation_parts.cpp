// Turning the members of a DSON file into values: animations.
// SPDX-License-Identifier: MIT

#include "json_rows.h"
#include "parts.h"

#include <algorithm>
#include <cmath>

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

/// Of colours and texts, too.
bool IsKeyOfSomething(const Element& row)
{
    const ReadingTally unheard;
    double time = NAN;
    if (ReadRow(row, &time, 1) < 2 || !std::isfinite(time))
        return false;
    const Element value = Items(row).at(1).value_unsafe();
    return !value.is_object() && !value.is_null();
}

/// What should be keys and says nothing at all.
std::size_t CountSenseless(const Element& animation)
{
    const auto list = Find(animation, "keys");
    if (list && list->is_object())
        return 1;
    const ReadingTally alreadyTold;
    std::size_t count = 0;
    ForEach(animation, "keys", [&count](const Element& row) { count += !IsKeyOfSomething(row); });
    return count;
}

} // namespace

std::optional<AnimatedValue> ParseAnimation(const Element& json, std::size_t& strange)
{
    AnimatedValue animation;
    animation.url = Text(json, "url");
    std::vector<Key> keys;
    std::size_t others = 0;
    ForEach(json, "keys", [&](const Element& row) {
        double pair[2];
        // Further entries say how to get to the next key.
        if (ReadRow(row, pair, 2) >= 2 && std::isfinite(pair[0]) && std::isfinite(pair[1]))
            keys.push_back({pair[0], pair[1]});
        else
            ++others;
    });
    if (keys.empty())
        strange += CountSenseless(json);
    if (keys.empty() || animation.url.empty())
        return std::nullopt;
    strange += others;
    animation.isMoving = keys.size() + others > 1;
    animation.value = ValueAtZero(std::move(keys));
    return animation;
}

} // namespace dson
