// What loading and saving cost as files grow: twice the content, twice the work.
// SPDX-License-Identifier: MIT

#include "dznode.h"
#include "dznumericproperty.h"
#include "dzscene.h"
#include "tests/host/allocations.h"
#include "tests/host/content_fixture.h"

#include <array>
#include <functional>
#include <ostream>
#include <string>

#include <fmt/format.h>

namespace {

namespace fs = std::filesystem;

/// Of a text for each number, with commas between.
template <class Text>
std::string Joined(int count, const Text& text)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += (i > 0 ? "," : "") + text(i);
    return all;
}

std::string Scene(const std::string& libraries, const std::string& nodes, const std::string& modifiers = "")
{
    return fmt::format(R"({{"file_version": "0.6.0.0", "asset_info": {{"id": "/Big.duf", "type": "scene"}},
        {} "scene": {{"nodes": [{}], "modifiers": [{}]}}}})",
                       libraries, nodes, modifiers);
}

struct Growing {
    const char* name;
    std::function<std::string(int)> text; ///< of a scene with so many of them
};

std::string Group(int i, const std::string& more = "")
{
    return fmt::format(R"({{"id": "g{0}", "label": "Group {0}"{1}}})", i, more);
}

std::string NestedNodes(int count)
{
    return Scene("", Joined(count, [](int i) {
                     return Group(i, i == 0 ? "" : fmt::format(R"(, "parent": "#g{}")", i - 1));
                 }));
}

std::string EqualNodes(int count)
{
    return Scene("", Joined(count, [](int i) {
                     return fmt::format(R"({{"id": "g{}", "name": "Group", "label": "Group"}})", i);
                 }));
}

std::string BackwardNodes(int count)
{
    return Scene("", Joined(count, [count](int i) {
                     return Group(i, i + 1 == count ? "" : fmt::format(R"(, "parent": "#g{}")", i + 1));
                 }));
}

/// A circle of parents.
std::string CircleOfNodes(int count)
{
    return Scene("", Joined(count, [count](int i) {
                     return Group(i, fmt::format(R"(, "parent": "#g{}")", (i + 1) % count));
                 }));
}

/// A figure's bones, each below the one before.
/// @param more       beside the nodes, with a comma behind
/// @param modifiers  of the scene
std::string ChainOfBonesWith(int count, const std::string& more, const std::string& figure,
                             const std::string& modifiers)
{
    const std::string bones = Joined(count, [](int i) {
        return fmt::format(R"({{"id": "b{0}", "name": "b{0}", "type": "bone", "parent": "#{1}",
            "center_point": [{{"id": "x", "value": {0}}}]}})",
                           i, i == 0 ? std::string("Fig") : fmt::format("b{}", i - 1));
    });
    const std::string instances = Joined(count, [](int i) {
        return fmt::format(R"({{"id": "b{0}-1", "url": "#b{0}", "parent": "#{1}-1"}})", i,
                           i == 0 ? std::string("Fig") : fmt::format("b{}", i - 1));
    });
    return Scene(more + R"("node_library": [{"id": "Fig", "name": "Fig", "type": "figure"},)" + bones + "],",
                 figure + "," + instances, modifiers);
}

std::string ChainOfBones(int count)
{
    return ChainOfBonesWith(count, {}, R"({"id": "Fig-1", "url": "#Fig"})", {});
}

const char* const smallGeometry = R"("geometry_library": [{"id": "Mesh", "type": "polygon_mesh",
    "vertices": {"count": 4, "values": [[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0]]},
    "polygon_groups": {"count": 1, "values": ["all"]},
    "polygon_material_groups": {"count": 1, "values": ["skin"]},
    "polylist": {"count": 1, "values": [[0, 0, 0, 1, 2, 3]]}}],)";
const char* const oneFigure = R"("node_library": [{"id": "Fig", "name": "Fig", "type": "figure"}],)";

const char* const smallFigure =
    R"({"id": "Fig-1", "url": "#Fig", "geometries": [{"id": "Mesh-1", "url": "#Mesh"}]})";

std::string SceneOfDials(const std::string& dials, int count)
{
    return Scene(smallGeometry + std::string(oneFigure) + R"("modifier_library": [)" + dials + "],",
                 smallFigure, Joined(count, [](int i) {
                     return fmt::format(R"({{"id": "d{0}-1", "url": "#d{0}", "parent": "#Mesh-1"}})", i);
                 }));
}

/// Each bone of a chain turns the mesh, and each has a face group of its name.
std::string ChainOfSkinnedBones(int count)
{
    const std::string joints = Joined(count, [](int i) {
        return fmt::format(
            R"({{"id": "b{0}", "node": "#b{0}", "node_weights": {{"count": 1, "values": [[{1}, 1]]}}}})", i,
            i % 4);
    });
    const std::string pairs = Joined(count, [](int i) { return fmt::format(R"(["b{0}", "b{0}"])", i); });
    return ChainOfBonesWith(
        count,
        smallGeometry + fmt::format(R"("modifier_library": [{{"id": "Skin", "name": "Skin", "parent": "#Mesh",
                                "skin": {{"node": "#Fig", "geometry": "#Mesh", "vertex_count": 4, "joints": [{}],
                                "selection_map": [{{"id": "m", "mappings": [{}]}}]}}}}],)",
                                    joints, pairs),
        smallFigure, R"({"id": "Skin-1", "url": "#Skin", "parent": "#Mesh-1"})");
}

/// @param driver  of each, by number; negative for none
std::string DrivenDials(int count, const std::function<int(int)>& driver)
{
    const auto link = [&](int i) {
        return driver(i) < 0 ? std::string()
                             : fmt::format(R"(, "formulas": [{{"output": "Fig:#d{0}?value",
            "operations": [{{"op": "push", "url": "Fig:#d{1}?value"}}]}}])",
                                           i, driver(i));
    };
    const auto dial = [&](int i) {
        return fmt::format(R"({{"id": "d{0}", "name": "d{0}", "parent": "#Mesh",
            "channel": {{"id": "value", "type": "float", "name": "d{0}", "value": 0}}{1}}})",
                           i, link(i));
    };
    return SceneOfDials(Joined(count, dial), count);
}

std::string ChainOfDials(int count)
{
    return DrivenDials(count, [](int i) { return i - 1; });
}

/// Each turned by the next, which the file has links for last.
std::string BackwardChainOfDials(int count)
{
    return DrivenDials(count, [count](int i) { return i + 1 < count ? i + 1 : -1; });
}

std::string CircleOfDials(int count)
{
    return DrivenDials(count, [count](int i) { return (i + count - 1) % count; });
}

/// @param step  from each alias to what it stands for, in the order of the file: 1 or -1
std::string ChainOfAliases(int count, int step)
{
    const auto dial = [&](int i) {
        const bool isEnd = i == (step > 0 ? count - 1 : 0);
        return fmt::format(R"({{"id": "d{0}", "name": "d{0}", "parent": "#Mesh",
            "channel": {{"id": "value", "type": "{1}", "name": "d{0}"{2}}}}})",
                           i, isEnd ? "float" : "alias",
                           isEnd ? std::string()
                                 : fmt::format(R"(, "target_channel": "Fig:#d{}?value")", i + step));
    };
    return SceneOfDials(Joined(count, dial), count);
}

/// All stand for the one dial.
std::string AliasesOfOneName(int count)
{
    const std::string aliases = Joined(count - 1, [](int i) {
        return fmt::format(R"({{"id": "d{}", "name": "same", "parent": "#Mesh",
            "channel": {{"id": "value", "type": "alias", "name": "same", "target_channel": "Fig:#d0?value"}}}})",
                           i + 1);
    });
    return SceneOfDials(R"({"id": "d0", "name": "d0", "parent": "#Mesh",
        "channel": {"id": "value", "type": "float", "name": "d0", "value": 0}},)" +
                            aliases,
                        count);
}

/// Every dial turned by the first.
std::string FanOfDials(int count)
{
    const std::string links = Joined(count - 1, [](int i) {
        return fmt::format(
            R"({{"output": "Fig:#d{}?value", "operations": [{{"op": "push", "url": "Fig:#d0?value"}}]}})",
            i + 1);
    });
    return SceneOfDials(Joined(count,
                               [&](int i) {
                                   return fmt::format(R"({{"id": "d{0}", "name": "d{0}", "parent": "#Mesh",
                        "channel": {{"id": "value", "type": "float", "name": "d{0}", "value": 0}}{1}}})",
                                                      i, i == 0 ? ", \"formulas\": [" + links + "]" : "");
                               }),
                        count);
}

std::string DialsOfOneName(int count)
{
    return SceneOfDials(Joined(count,
                               [](int i) {
                                   return fmt::format(R"({{"id": "d{0}", "name": "same", "parent": "#Mesh",
                        "channel": {{"id": "value", "type": "float", "name": "same", "value": 0}}}})",
                                                      i);
                               }),
                        count);
}

/// One face with that many corners.
std::string WideFace(int count)
{
    return Scene(fmt::format(R"("geometry_library": [{{"id": "Mesh", "type": "polygon_mesh",
            "vertices": {{"count": {0}, "values": [{1}]}},
            "polygon_groups": {{"count": 1, "values": ["all"]}},
            "polygon_material_groups": {{"count": 1, "values": ["skin"]}},
            "polylist": {{"count": 1, "values": [[0, 0, {2}]]}}}}],
            "node_library": [{{"id": "Fig", "name": "Fig", "type": "figure"}}],)",
                             count,
                             Joined(count, [](int i) { return fmt::format("[{}, {}, 0]", i, i * i % 7); }),
                             Joined(count, [](int i) { return std::to_string(i); })),
                 smallFigure);
}

/// Each face in a group and a surface of its own.
std::string GroupsOfFaces(int count)
{
    const auto names = [count](const char* prefix) {
        return Joined(count, [prefix](int i) { return fmt::format("\"{}{}\"", prefix, i); });
    };
    return Scene(fmt::format(R"("geometry_library": [{{"id": "Mesh", "type": "polygon_mesh",
            "vertices": {{"count": 4, "values": [[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0]]}},
            "polygon_groups": {{"count": {0}, "values": [{1}]}},
            "polygon_material_groups": {{"count": {0}, "values": [{2}]}},
            "polylist": {{"count": {0}, "values": [{3}]}}}}],
            "node_library": [{{"id": "Fig", "name": "Fig", "type": "figure"}}],)",
                             count, names("g"), names("s"),
                             Joined(count, [](int i) { return fmt::format("[{0}, {0}, 0, 1, 2, 3]", i); })),
                 smallFigure);
}

void PrintTo(const Growing& growing, std::ostream* out)
{
    *out << growing.name;
}

const Growing kinds[] = {
    {"nested_nodes", NestedNodes},
    {"nodes_before_their_parents", BackwardNodes},
    {"nodes_of_one_name", EqualNodes},
    {"circle_of_nodes", CircleOfNodes},
    {"chain_of_bones", ChainOfBones},
    {"chain_of_skinned_bones", ChainOfSkinnedBones},
    {"chain_of_dials", ChainOfDials},
    {"chain_of_dials_from_its_end", BackwardChainOfDials},
    {"circle_of_dials", CircleOfDials},
    {"aliases_of_one_name", AliasesOfOneName},
    {"fan_of_dials", FanOfDials},
    {"dials_of_one_name", DialsOfOneName},
    {"wide_face", WideFace},
    {"groups_of_faces", GroupsOfFaces},
};

template <class Work>
Allocations CostOf(const Work& work)
{
    const Allocations before = AllocationsSoFar();
    work();
    const Allocations after = AllocationsSoFar();
    return {after.count - before.count, after.bytes - before.bytes};
}

/// Loading, saving and taking down.
using Costs = std::array<Allocations, 3>;

class ContentCost : public LibraryTest, public testing::WithParamInterface<Growing> {
protected:
    Costs costsOf(int count)
    {
        TestHost().reset();
        const fs::path file = _library / "Big.duf";
        WriteBytes(file, GetParam().text(count));
        const QString copy = QString::fromStdString((_library / "Saved.duf").string());
        return {CostOf([&] { EXPECT_TRUE(open(file)); }),
                CostOf([&] { EXPECT_EQ(dzScene->saveScene(copy), 0); }), CostOf([] {
                    dzScene->clear();
                    dzScene->purgeRemoved();
                })};
    }
};

/// Arrays that double now and then take some more; work on all pairs would take four times as much.
void ExpectInProportion(const Allocations& small, const Allocations& large, int factor)
{
    ASSERT_GT(small.count, 0u);
    const double most = 1.7 * factor;
    EXPECT_LT(static_cast<double>(large.count) / static_cast<double>(small.count), most);
    EXPECT_LT(static_cast<double>(large.bytes) / static_cast<double>(small.bytes), most);
}

TEST_P(ContentCost, grows_as_the_file_does_until_it_is_taken_down)
{
    constexpr int count = 500, factor = 4;
    costsOf(count); // what happens once
    const Costs small = costsOf(count), large = costsOf(factor * count);
    if (!COUNTS_ALLOCATIONS)
        GTEST_SKIP() << "a sanitizer has the allocator";
    for (std::size_t step = 0; step < small.size(); ++step)
        ExpectInProportion(small[step], large[step], factor);
}

class ChainOfAliasesCost : public LibraryTest {
protected:
    /// Each alias leads to the end in one step, so that nobody walks the chain.
    void expectShort(int step)
    {
        constexpr int length = 2000, last = length - 1;
        TestHost().reset();
        WriteBytes(_library / "Big.duf", ChainOfAliases(length, step));
        ASSERT_TRUE(open(_library / "Big.duf"));
        const int end = step > 0 ? last : 0;
        for (int i = 0; i < length; ++i) {
            if (i == end)
                continue;
            ASSERT_TRUE(dial(i)) << i;
            ASSERT_EQ(dial(i)->getAliasTarget(), dial(end)) << i;
        }
        auto* const first = qobject_cast<DzNumericProperty*>(dial(last - end));
        ASSERT_TRUE(first);
        first->setDoubleValue(0.5);
        EXPECT_EQ(qobject_cast<const DzNumericProperty*>(dial(end))->getDoubleValue(), 0.5);
    }

private:
    static DzProperty* dial(int i) { return dzScene->getNode(0)->findProperty(QStringLiteral("d%1").arg(i)); }
};

TEST_F(ChainOfAliasesCost, is_one_step_from_the_near_end)
{
    expectShort(-1);
}

TEST_F(ChainOfAliasesCost, is_one_step_from_the_far_end)
{
    expectShort(1);
}

class PresetCost : public LibraryTest {
protected:
    /// Of a preset that sets each dial of a chain.
    Allocations costOf(int count)
    {
        TestHost().reset();
        WriteBytes(_library / "Big.duf", ChainOfDials(count));
        EXPECT_TRUE(open(_library / "Big.duf"));
        const std::string values = Joined(count, [](int i) {
            return fmt::format(R"({{"url": "name://@selection#d{}:?value/value", "keys": [[0, 0.5]]}})", i);
        });
        const fs::path preset = writePose(("[" + values + "]").c_str());
        dzScene->getNode(0)->select(true);
        dzScene->setPrimarySelection(dzScene->getNode(0));
        const Allocations cost = CostOf([&] { EXPECT_TRUE(open(preset)); });
        EXPECT_EQ(qobject_cast<DzNumericProperty*>(FindProperty(count - 1))->getDoubleValue(), 0.5 * count);
        return cost;
    }

    static DzProperty* FindProperty(int dial)
    {
        return dzScene->getNode(0)->findProperty(QStringLiteral("d%1").arg(dial));
    }
};

TEST_F(PresetCost, grows_with_the_values_and_not_with_what_hangs_on_each)
{
    constexpr int count = 500, factor = 4;
    costOf(count); // what happens once
    const Allocations small = costOf(count), large = costOf(factor * count);
    if (!COUNTS_ALLOCATIONS)
        GTEST_SKIP() << "a sanitizer has the allocator";
    ExpectInProportion(small, large, factor);
}

INSTANTIATE_TEST_SUITE_P(Of, ContentCost, testing::ValuesIn(kinds),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
