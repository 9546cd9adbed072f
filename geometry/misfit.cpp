// Meshes that were meant to lie close to each other, and do not.
// SPDX-License-Identifier: MIT

#include "geometry/misfit.h"

#include "base/counted.h"

#include <algorithm>

#include <fmt/format.h>

namespace geometry {

namespace {

struct UnitPair {
    double ratio;
    const char* larger; ///< what the mesh of the larger numbers is in
    const char* smaller;
};

/// Two files of the same thing differ by so much in size.
constexpr UnitPair unitPairs[] = {
    {100.0, "centimetres", "metres"}, {10.0, "millimetres", "centimetres"}, {1000.0, "millimetres", "metres"},
    {2.54, "centimetres", "inches"},  {30.48, "centimetres", "feet"},       {39.37, "inches", "metres"},
};

const UnitPair* UnitsThatDiffer(double ratio)
{
    // Bodies of one kind differ less in size than this leaves room for, and no two pairs overlap.
    constexpr double room = 1.12;
    const auto fits = [ratio](const UnitPair& pair) {
        return ratio > pair.ratio / room && ratio < pair.ratio * room;
    };
    const auto found = std::find_if(std::begin(unitPairs), std::end(unitPairs), fits);
    return found == std::end(unitPairs) ? nullptr : found;
}

double Volume(const Box3f& box)
{
    const Vec3f size = box.size();
    return double{size.x} * double{size.y} * double{size.z};
}

Box3f Common(const Box3f& a, const Box3f& b)
{
    Box3f common;
    common.min = {std::max(a.min.x, b.min.x), std::max(a.min.y, b.min.y), std::max(a.min.z, b.min.z)};
    common.max = {std::min(a.max.x, b.max.x), std::min(a.max.y, b.max.y), std::min(a.max.z, b.max.z)};
    return common;
}

bool AreApart(const Box3f& a, const Box3f& b)
{
    const Box3f common = Common(a, b);
    return common.min.x > common.max.x || common.min.y > common.max.y || common.min.z > common.max.z;
}

/// The common part of two boxes as a share of what both cover.
double Overlap(const Box3f& a, const Box3f& b)
{
    if (AreApart(a, b))
        return 0.0;
    const double common = Volume(Common(a, b)), all = Volume(a) + Volume(b) - common;
    return all > 0.0 ? common / all : 0.0;
}

/// @param turn  1 from Z up to Y up, -1 back
Box3f Turned(const Box3f& box, float turn)
{
    Box3f turned;
    turned.include({box.min.x, turn * box.min.z, -turn * box.min.y});
    turned.include({box.max.x, turn * box.max.z, -turn * box.max.y});
    return turned;
}

} // namespace

bool IsMisfit(const MatchStatistics& statistics)
{
    // Of meshes that belong together, a half or more finds its place; of crossing ones, what is at the
    // crossing.
    constexpr double least = 0.05;
    const double all = double(statistics.matched) + double(statistics.filled);
    return double(statistics.matched) < least * all;
}

std::string DescribeMisfit(const MatchStatistics& statistics, base::Span<const Vec3f> source,
                           base::Span<const Vec3f> target, const std::string& sourceName)
{
    return fmt::format("only {} of its {} a place on {}; it {}", statistics.matched,
                       base::Counted(target.size(), "vertex has", "vertices have"), sourceName,
                       LikelyMisfit(BoundingBox(source), BoundingBox(target)));
}

std::string LikelyMisfit(const Box3f& source, const Box3f& target)
{
    constexpr double alike = 0.6;
    const double sourceSize = Length(source.size()), targetSize = Length(target.size());
    const bool isLarger = targetSize > sourceSize;
    const double ratio = isLarger ? targetSize / sourceSize : sourceSize / targetSize;
    if (const UnitPair* const units = UnitsThatDiffer(ratio))
        return fmt::format("is {:.3g} times {} than the source, as if it were in {} and the source in {}",
                           ratio, isLarger ? "larger" : "smaller", isLarger ? units->larger : units->smaller,
                           isLarger ? units->smaller : units->larger);
    if (Overlap(source, target) < alike) {
        if (Overlap(source, Turned(target, 1.0f)) > alike)
            return "stands as if it had Z up and the source Y up";
        if (Overlap(source, Turned(target, -1.0f)) > alike)
            return "stands as if it had Y up and the source Z up";
    }
    if (AreApart(source, target))
        return fmt::format("lies {:.3g} cm away from the source, from middle to middle",
                           Length(target.center() - source.center()));
    return "does not lie close to the source's surface";
}

} // namespace geometry
