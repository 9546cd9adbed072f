// Conversions of figures that wear and hold things.
// SPDX-License-Identifier: MIT

#include "tests/plugin/conversion_fixture.h"

#include "dzbone.h"
#include "dzobject.h"
#include "figure/fitting.h"
#include "figure/pipeline.h"
#include "gnt_convert-impl.h"
#include "ks_daz-helpers.h"
#include "tests/plugin/mini_scene.h"

#include <filesystem>
#include <fstream>

namespace {

/// As other programs write a person with an earring and a bag: the meshes stand in the scene file itself.
const char* const sceneWithProps = R"({
    "file_version": "0.6.0.0",
    "asset_info": {"id": "/Scenes/Dressed.duf", "type": "scene"},
    "geometry_library": [{"id": "Ring-g", "vertices": {"count": 4, "values":
            [[0, 150, 0], [1, 150, 0], [1, 151, 0], [0, 151, 0]]},
        "polygon_groups": {"count": 1, "values": ["ring"]},
        "polygon_material_groups": {"count": 1, "values": ["Gold"]},
        "polylist": {"count": 1, "values": [[0, 0, 0, 1, 2, 3]]}}],
    "node_library": [{"id": "Ring", "type": "node", "label": "Ring"},
        {"id": "Bags", "type": "node", "label": "Bags"}],
    "scene": {"nodes": [
        {"id": "Genesis3Female", "label": "Vera",
         "url": "/data/DAZ%203D/Genesis%203/Female/Genesis3Female.dsf#Genesis3Female"},
        {"id": "hip", "url": "/data/DAZ%203D/Genesis%203/Female/Genesis3Female.dsf#hip",
         "parent": "#Genesis3Female"},
        {"id": "head", "url": "/data/DAZ%203D/Genesis%203/Female/Genesis3Female.dsf#head", "parent": "#hip"},
        {"id": "Earring", "url": "#Ring", "label": "Earring", "parent": "#head",
         "geometries": [{"id": "Earring-g", "url": "#Ring-g"}]},
        {"id": "Bags-1", "url": "#Bags", "label": "Bags", "parent": "#hip"},
        {"id": "Bag", "url": "#Ring", "label": "Bag", "parent": "#Bags-1",
         "geometries": [{"id": "Bag-g", "url": "#Ring-g"}]}]}})";

class ParentedProps : public ConversionFixture {
protected:
    /// Vera, with the usual dials, as a scene file has her.
    void loadDressed()
    {
        const std::filesystem::path folder = TestFolder().toStdString() + "/mini/Scenes";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "Dressed.duf") << sceneWithProps;
        loadPairInOnePlace("Scenes/Dressed.duf");
    }

    /// In the file that a conversion writes of the source.
    std::size_t exportedVertices()
    {
        selectBoth();
        GntConverter::Impl converter(GntConverter::FindSourceAndTargetInSceneSelected_X());
        kst::daz::SetNodeResolution(*source, kst::daz::NodeResolution::BaseResolution, true);
        kst::daz::SetSceneSelection(*source);
        std::ifstream obj(converter.exportSelectedAsObj_X("figure"));
        std::size_t count = 0;
        for (std::string line; std::getline(obj, line);)
            count += line.compare(0, 2, "v ") == 0;
        return count;
    }
};

TEST_F(ParentedProps, are_no_part_of_the_exported_figure)
{
    loadDressed();
    ASSERT_NE(dzScene->findNodeByLabel(QLatin1String("Bag")), nullptr);
    ASSERT_EQ(dzScene->findNodeByLabel(QLatin1String("Earring"))->getNodeParent(),
              source->findBone(QLatin1String("head")));
    DzFigure& shirt = LoadMini(genesis8Female);
    DzFigure& doll = LoadMini("People/Genesis 8 Male/Developer Kit/Genesis 8 Male Dev Load.duf");
    openhost::FitTo(shirt, *source);
    source->addNodeChild(&shirt);
    source->findBone(QLatin1String("l_thigh"))->addNodeChild(&doll);
    EXPECT_EQ(exportedVertices(), source->getObject()->pipeline().base().vertexCount());
}

TEST_F(ParentedProps, change_nothing_in_the_morphs_that_a_conversion_makes)
{
    loadPairInOnePlace(genesis3Female);
    convert(allJobs());
    const MadeMorphs plain = madeMorphs();
    loadDressed();
    ASSERT_NE(dzScene->findNodeByLabel(QLatin1String("Earring")), nullptr);
    convert(allJobs());
    EXPECT_EQ(plain.size(), 3u);
    EXPECT_EQ(madeMorphs(), plain);
}

} // namespace
