// What each option of the Transfer Utility does.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzerclink.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzpresentation.h"
#include "dzselectionmap.h"
#include "dzskinbinding.h"
#include "tests/host/tools_fixture.h"
#include "tools/transfer_utility.h"

#include <QMetaMethod>

#include <optional>
#include <set>

namespace {

class TransferOptions : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        tube.emplace();
        prop = AddProp("Target", Tube(8));
        utility.setSource(tube->figure);
        utility.setTarget(prop);
        utility.setTransferBinding(false);
    }

    DzFigure* transferred()
    {
        EXPECT_TRUE(utility.doTransfer());
        return utility.getTargetOutputFigure();
    }

    std::set<std::string> morphsOf(DzFigure& figure) const
    {
        std::set<std::string> names;
        for (int i = 0; i < figure.getObject()->getNumModifiers(); ++i)
            if (qobject_cast<DzMorph*>(figure.getObject()->getModifier(i)))
                names.insert(figure.getObject()->getModifier(i)->getName().toStdString());
        return names;
    }

    std::set<std::string> morphsWith(int type)
    {
        utility.setTransferMorphs(true);
        utility.setTransferSourceMorphs(type);
        return morphsOf(*transferred());
    }

    std::optional<TubeFigure> tube;
    DzNode* prop = nullptr;
    DzTransferUtility utility;
};

TEST_F(TransferOptions, are_kept_and_every_setter_answers)
{
    const QMetaObject& meta = DzTransferUtility::staticMetaObject;
    int setters = 0;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const QByteArray name = method.name();
        if (!name.startsWith("set"))
            continue;
        ++setters;
        EXPECT_STREQ(method.typeName(), "bool") << name.constData();
        if (method.parameterTypes().value(0) != "bool")
            continue;
        for (const bool value : {true, false, true}) {
            bool answer = false, kept = !value;
            EXPECT_TRUE(method.invoke(&utility, Qt::DirectConnection, Q_RETURN_ARG(bool, answer),
                                      Q_ARG(bool, value)));
            EXPECT_TRUE(answer) << name.constData();
            EXPECT_TRUE(QMetaObject::invokeMethod(&utility, "g" + name.mid(1), Q_RETURN_ARG(bool, kept)));
            EXPECT_EQ(kept, value) << name.constData();
        }
    }
    EXPECT_GE(setters, 12);
}

TEST_F(TransferOptions, without_binding_make_a_figure_without_weights)
{
    EXPECT_EQ(transferred()->getSkinBinding(), nullptr);
}

TEST_F(TransferOptions, copy_the_selection_map_only_when_asked)
{
    auto* const map = new DzSelectionMap;
    map->addPair(QStringLiteral("left"), QStringLiteral("lower"));
    tube->figure->setSelectionMap(map);
    EXPECT_EQ(transferred()->getSelectionMap(), nullptr);
    utility.setTarget(AddProp("Second", Tube(8)));
    utility.setTransferSelectionMap(true);
    const DzSelectionMap* const copy = transferred()->getSelectionMap();
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->getNumPairs(), 1);
    EXPECT_EQ(copy->getPairGroup(0), QLatin1String("left"));
    EXPECT_EQ(copy->getPairNodeName(0), QLatin1String("lower"));
    EXPECT_NE(copy, map);
}

TEST_F(TransferOptions, take_groups_and_surfaces_only_when_asked)
{
    const auto groupsAfter = [&](bool faces, bool regions, bool surfaces) {
        geometry::PolygonMesh plain = Tube(8);
        auto topology = std::make_shared<geometry::Topology>(*plain.topology);
        topology->groupNames = {"all"};
        std::fill(topology->faceGroups.begin(), topology->faceGroups.end(), 0u);
        topology->surfaceNames = {"old"};
        plain.topology = topology;
        utility.setTarget(AddProp("Plain", plain));
        utility.setTransferFaceGroups(faces);
        utility.setTransferRegionGroups(regions);
        utility.setTransferMaterialGroups(surfaces);
        const auto* const shape = qobject_cast<DzFacetShape*>(transferred()->getObject()->getCurrentShape());
        const geometry::Topology& made = *openhost::MeshAccess::mesh(*shape->getFacetMesh()).topology;
        return std::pair(made.groupNames, made.surfaceNames);
    };
    const geometry::PolygonMesh source = Tube(8);
    const std::vector<std::string> all{"all"}, old{"old"};
    EXPECT_EQ(groupsAfter(false, false, false), std::pair(all, old));
    EXPECT_EQ(groupsAfter(true, false, false), std::pair(source.topology->groupNames, old));
    EXPECT_EQ(groupsAfter(false, true, false), std::pair(source.topology->groupNames, old));
    EXPECT_EQ(groupsAfter(false, false, true), std::pair(all, source.topology->surfaceNames));
}

TEST_F(TransferOptions, choose_which_morphs_go_along)
{
    const auto add = [&](const char* name) { return tube->addMorph(name, {1}, {{0, 1, 0}}); };
    DzMorph* const favourite = add("Favourite");
    favourite->getValueControl()->setIsFavorite(true);
    DzMorph* const part = add("Part");
    part->getValueControl()->insertController(new DzERCLink(favourite->getValueControl(), 1.0, 0.0));
    DzMorph* const partOfPart = add("PartOfPart");
    partOfPart->getValueControl()->insertController(new DzERCLink(part->getValueControl(), 1.0, 0.0));
    favourite->getValueControl()->insertController(new DzERCLink(partOfPart->getValueControl(), 0.0, 0.0));
    for (const auto& [name, type] : {std::pair("Shape", "Modifier/Shape"), {"Pose", "Modifier/Pose"}}) {
        auto* const presentation = new DzPresentation;
        presentation->setType(QLatin1String(type));
        add(name)->setPresentation(presentation);
    }
    typedef std::set<std::string> Names;
    EXPECT_EQ(morphsWith(DzTransferUtility::NoMorphs), Names());
    const auto again = [&](int type) {
        utility.setTarget(AddProp("Again", Tube(8)));
        return morphsWith(type);
    };
    EXPECT_EQ(again(DzTransferUtility::Favorites), (Names{"Favourite"}));
    EXPECT_EQ(again(DzTransferUtility::FavoritesAndSubComponets), (Names{"Favourite", "Part", "PartOfPart"}));
    EXPECT_EQ(again(DzTransferUtility::ShapingAndPoseType), (Names{"Pose", "Shape"}));
    EXPECT_EQ(again(DzTransferUtility::AllMorphs),
              (Names{"Favourite", "Part", "PartOfPart", "Pose", "Shape"}));
    EXPECT_EQ(again(99), Names()) << "no version knows it";
    utility.setMorphTransferList({QStringLiteral("Shape"), QStringLiteral("Nobody")});
    EXPECT_EQ(again(DzTransferUtility::NameList), (Names{"Shape"}));
}

TEST_F(TransferOptions, take_favourite_dials_of_the_node_for_what_they_drive)
{
    auto* const control = new DzFloatProperty(QStringLiteral("Control"), true, true);
    control->setIsFavorite(true);
    tube->figure->addProperty(control);
    tube->addMorph("Driven", {1}, {{0, 1, 0}})
        ->getValueControl()
        ->insertController(new DzERCLink(control, 1.0, 0.0));
    EXPECT_EQ(morphsWith(DzTransferUtility::FavoritesAndSubComponets), std::set<std::string>{"Driven"});
}

TEST_F(TransferOptions, parent_the_result_to_the_source_where_it_stands)
{
    tube->figure->getXPosControl()->setValue(2.0f);
    utility.setParentToFigure(true);
    const DzFigure* const made = transferred();
    EXPECT_EQ(made->getNodeParent(), tube->figure);
    EXPECT_NEAR(made->getWSPos().m_x, 0.0f, 1e-5f);
    EXPECT_NEAR(made->getXPosControl()->getValue(), -2.0f, 1e-5f);
}

TEST_F(TransferOptions, fit_the_result_to_the_source)
{
    EXPECT_EQ(transferred()->getFollowTarget(), nullptr);
    utility.setTarget(AddProp("Second", Tube(8)));
    utility.setFitToFigure(true);
    utility.setTransferBinding(true);
    DzFigure* const fitted = transferred();
    EXPECT_EQ(fitted->getFollowTarget(), tube->figure);
    tube->lower->getZRotControl()->setValue(30.0f);
    const DzBone* const lower = fitted->findBone(tube->lower->getName());
    ASSERT_NE(lower, nullptr);
    EXPECT_NEAR(lower->getWSRot().m_z, tube->lower->getWSRot().m_z, 1e-6) << "it bends with the figure";
    EXPECT_GT(lower->getWSRot().m_z, 0.2);
}

TEST_F(TransferOptions, let_the_result_replace_the_source)
{
    utility.setTargetReplacesSource(true);
    const DzFigure* const made = transferred();
    EXPECT_EQ(dzScene->findNodeIndex(tube->figure), -1);
    EXPECT_GE(dzScene->findNodeIndex(made), 0);
}

TEST_F(TransferOptions, keep_the_prop_beside_its_figure)
{
    utility.setRemoveOriginalTarget(false);
    const DzFigure* const made = transferred();
    EXPECT_GE(dzScene->findNodeIndex(prop), 0);
    EXPECT_NE(static_cast<const DzNode*>(made), prop);
}

} // namespace
