// Hosts and scenes that lack something, or have too much of it.
// SPDX-License-Identifier: MIT

#include "tests/plugin/conversion_fixture.h"
#include "tests/plugin/mini_scene.h"
#include "tests/plugin/scripted_forms.h"

#include "dzbone.h"
#include "dzclassfactory.h"
#include "dzcontentmgr.h"
#include "dzprogress.h"
#include "dzskeleton.h"
#include "gnt_convert-impl.h"
#include "openhost/testing.h"
#include "tests/shared/throws.h"

#include <QApplication>

#include <algorithm>
#include <filesystem>
#include <functional>

namespace {

/// Does something to each node that enters the scene.
class Newcomers : public QObject {
public:
    explicit Newcomers(std::function<void(DzNode&)> act)
    {
        connect(dzScene, &DzScene::nodeAdded, this, [act = std::move(act)](DzNode* node) { act(*node); });
    }
};

/// A host whose loader or importer labels what it brings otherwise.
std::function<void(DzNode&)> Relabel(const char* beginning, const char* className)
{
    return [=](DzNode& node) {
        if (node.getLabel().startsWith(QLatin1String(beginning)) && node.inherits(className) &&
            node.isRootNode())
            node.setLabel(QLatin1String("Otherwise"));
    };
}

class FailureCauses : public ConversionFixture {
protected:
    std::string messageOf(GntJobs jobs)
    {
        const auto before = stateOfBoth();
        const std::string message = MessageOf([&] { convert(jobs); });
        EXPECT_EQ(stateOfBoth(), before);
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        EXPECT_EQ(DzProgress::getDepth(), 0);
        return WithoutChance(QString::fromStdString(message));
    }

    void expectNextConversion()
    {
        selectBoth();
        EXPECT_EQ(convert(allJobs()).size(), 3u);
    }

    static std::filesystem::path inLibrary(const char* relativePath)
    {
        return std::filesystem::path(TestFolder().toStdString()) / "mini" / relativePath;
    }
};

/// A file of the small library that is away for a scope.
class MissingFile {
public:
    explicit MissingFile(std::filesystem::path file) : _file(std::move(file)) { move(_file, away()); }
    ~MissingFile() { move(away(), _file); }
    MissingFile(const MissingFile&) = delete;
    MissingFile& operator=(const MissingFile&) = delete;

private:
    std::filesystem::path away() const { return _file.string() + ".away"; }
    static void move(const std::filesystem::path& from, const std::filesystem::path& to)
    {
        std::filesystem::rename(from, to);
    }

    std::filesystem::path _file;
};

TEST_F(FailureCauses, a_missing_stock_figure_is_told_before_anybody_is_asked)
{
    for (const GntFigureFile& file : GNT_FIGURE_FILES) {
        loadPair(genesis8Female);
        const MissingFile missingFile(inLibrary(file.relativePath));
        const ScriptedForms forms;
        const auto before = stateOfBoth();
        EXPECT_EQ(MessageOf([] { GntConverter::Exec_X(nullptr); }),
                  "cannot find " + Quoted(file.relativePath) +
                      " in any content library; please make sure Genesis 9 is installed correctly");
        EXPECT_FALSE(forms.question);
        EXPECT_EQ(stateOfBoth(), before);
    }
}

TEST_F(FailureCauses, a_missing_head_split_matters_to_head_and_body_only)
{
    loadPair(genesis8Female);
    {
        const MissingFile missingFile(inLibrary(GNT_HEAD_SPLIT_FILE));
        EXPECT_EQ(messageOf(GntJobFlag::Full), "(nothing was thrown)");
        for (const GntJobFlag job : {GntJobFlag::Head, GntJobFlag::Body}) {
            selectBoth();
            EXPECT_EQ(messageOf(job),
                      "cannot find " + Quoted("People/Genesis 9/Developer Kit/G9 HeadSplit DFormer.duf") +
                          " in any content library; please make sure Genesis 9 is installed correctly");
        }
    }
    expectNextConversion();
}

TEST_F(FailureCauses, an_importer_that_labels_otherwise)
{
    for (const char* const stem : {"tempg8-tgt", "tempg9"}) {
        loadPair(genesis8Female);
        {
            const Newcomers relabel(Relabel(stem, "DzNode"));
            EXPECT_EQ(messageOf(GntJobFlag::Full), "unable to find a node labeled " +
                                                       Quoted(std::string(stem) + "-*") +
                                                       " in the scene after OBJ import");
        }
        expectNextConversion();
    }
}

TEST_F(FailureCauses, a_transfer_that_labels_otherwise)
{
    loadPair(genesis8Female);
    {
        const Newcomers relabel(Relabel("tempg9-", "DzFigure"));
        EXPECT_EQ(messageOf(GntJobFlag::Full),
                  "unable to find figure labeled " + Quoted("tempg9-*") + " after running Transfer Utility");
    }
    expectNextConversion();
}

TEST_F(FailureCauses, a_stock_figure_that_is_labelled_otherwise)
{
    const std::pair<const char*, const char*> figures[] = {
        {"Genesis 8 Female", genesis8Female},
        {"Genesis 9", "People/Genesis 9/Developer Kit/Genesis 9 Dev Load.duf"}};
    for (const auto& [label, file] : figures) {
        loadPair(genesis8Female);
        {
            const Newcomers relabel(Relabel(label, "DzFigure"));
            EXPECT_EQ(messageOf(GntJobFlag::Full), "failed to find a figure named " + Quoted(label) +
                                                       " in the scene after loading " +
                                                       Quoted(inLibrary(file).string()));
        }
        expectNextConversion();
    }
}

TEST_F(FailureCauses, a_stock_figure_that_is_none)
{
    loadPair(genesis8Female);
    const Newcomers replace([](DzNode& node) {
        if (!node.inherits("DzFigure") || node.getLabel() != QLatin1String("Genesis 8 Female"))
            return;
        node.setLabel(QLatin1String("Otherwise"));
        auto* const prop = new DzNode;
        prop->setLabel(QLatin1String("Genesis 8 Female"));
        dzScene->addNode(prop);
    });
    EXPECT_EQ(messageOf(GntJobFlag::Full), "node " + Quoted("Genesis 8 Female") + " is not a DzFigure");
}

TEST_F(FailureCauses, a_manager_that_is_not_there)
{
    const std::pair<const char*, const char*> managers[] = {
        {"DzContentMgr", "failed to get Daz Studio content manager"},
        {"DzExportMgr", "failed to find DzObjExporter"},
        {"DzImportMgr", "failed to find DzObjImporter"},
        {"DzActionMgr", "failed to get Daz Studio action manager"},
        {"DzMainWindow", "failed to get Daz Studio main window"}};
    for (const auto& [className, message] : managers) {
        loadPair(genesis8Female);
        ASSERT_TRUE(openhost::RemoveManager(QLatin1String(className)));
        EXPECT_EQ(messageOf(GntJobFlag::Full), message);
    }
}

TEST_F(FailureCauses, a_tool_that_is_not_there)
{
    const std::pair<const char*, const char*> tools[] = {
        {"DzMorphLoader", "cannot find DzMorphLoader factory"},
        {"DzMorphLoaderBatch", "cannot find DzMorphLoaderBatch factory"},
        {"DzTransferUtility", "cannot find DzTransferUtility class factory"}};
    for (const auto& [className, message] : tools) {
        loadPair(genesis8Female);
        {
            const openhost::ClassFactoryOverride lacking(QLatin1String(className), nullptr);
            EXPECT_EQ(messageOf(GntJobFlag::Full), message);
        }
        expectNextConversion();
    }
}

TEST_F(FailureCauses, a_target_without_thighs)
{
    loadPair(genesis8Female);
    target->findBone(QLatin1String("r_thigh"))->setName(QLatin1String("other"));
    EXPECT_EQ(messageOf(GntJobFlag::Full),
              "cannot find bone " + Quoted("r_thigh") + " in figure " + Quoted("Target * (Genesis 9)"));
    loadPair(genesis3Female);
    target->findBone(QLatin1String("r_thigh"))->setName(QLatin1String("other"));
    EXPECT_EQ(messageOf(GntJobFlag::Full), "(nothing was thrown)") << "Genesis 3 needs none";
}

class NamesakeTest : public FailureCauses {
protected:
    void SetUp() override
    {
        loadPair(genesis8Female);
        convert(allJobs());
        fresh = madeMorphs();
        loadPair(genesis8Female);
    }

    MadeMorphs fresh;
};

TEST_F(NamesakeTest, of_a_stock_figure_is_in_the_way_until_it_has_another_name)
{
    const std::pair<const char*, const char*> figures[] = {
        {"Genesis 8 Female", genesis8Female},
        {"Genesis 9", "People/Genesis 9/Developer Kit/Genesis 9 Dev Load.duf"}};
    for (const auto& [label, file] : figures) {
        loadPair(genesis8Female);
        target->setLabel(QLatin1String("Nova"));
        DzFigure& namesake = LoadMini(file);
        ASSERT_EQ(namesake.getLabel(), QLatin1String(label));
        selectBoth();
        EXPECT_EQ(messageOf(allJobs()), "failed to find a figure named " + Quoted(label) +
                                            " in the scene after loading " +
                                            Quoted(inLibrary(file).string()));
        EXPECT_EQ(namesake.getLabel(), QLatin1String(label)) << "nobody else's node is touched";
        namesake.setLabel(QLatin1String("Mine"));
        DzNode* const leftOver = dzScene->findNodeByLabel(QLatin1String(label) + QStringLiteral(" (2)"));
        ASSERT_NE(leftOver, nullptr);
        dzScene->removeNode(leftOver);
        selectBoth();
        EXPECT_EQ(messageOf(allJobs()), "(nothing was thrown)");
        EXPECT_EQ(madeMorphs(), fresh);
        EXPECT_EQ(namesake.getLabel(), QLatin1String("Mine"));
    }
}

TEST_F(NamesakeTest, may_be_the_source_or_have_the_label_that_the_target_lays_down)
{
    source->setLabel(QLatin1String("Genesis 8 Female"));
    target->setLabel(QLatin1String("Genesis 9"));
    convert(allJobs());
    EXPECT_EQ(madeMorphs(), fresh);
    EXPECT_EQ(source->getLabel(), QLatin1String("Genesis 8 Female"));
    EXPECT_EQ(target->getLabel(), QLatin1String("Genesis 8 Female converted to G9"));
}

/// Refuses to make one morph.
class NoMorphCalled : public openhost::OperationWatch {
public:
    explicit NoMorphCalled(const char* name) : _name(QLatin1String(name)) {}
    bool allow(openhost::Operation operation, const QString& detail) override
    {
        return operation != openhost::Operation::CreateMorph || detail != _name;
    }

private:
    QString _name;
};

TEST_F(NamesakeTest, of_the_head_split_on_another_target_is_not_in_the_way)
{
    {
        const NoMorphCalled refusal("Head");
        EXPECT_EQ(messageOf(GntJobFlag::Head), "failed to find new morph " + Quoted("Head") + " in node " +
                                                   Quoted("Vera converted to G9") +
                                                   " figure after conversion; Morph Loader Pro returned: ");
    }
    const std::vector<std::string> leftOver = otherRoots();
    EXPECT_NE(std::find(leftOver.begin(), leftOver.end(), "D-Former_1"), leftOver.end());
    DzFigure& first = *target;
    target = &LoadMini("People/Genesis 9/Genesis 9.duf");
    for (const char* const name : {"XTranslate", "YTranslate", "ZTranslate", "XRotate", "YRotate", "ZRotate"})
        transform(*target, name).setValue(transform(first, name).getValue());
    selectBoth();
    convert(allJobs());
    EXPECT_EQ(madeMorphs(), fresh);
}

TEST_F(NamesakeTest, of_several_failures_in_a_row_is_not_in_the_way)
{
    // Each gets further than the one before it.
    for (const char* const morph : {"Temporary high-res morph", "Full", "Head", "Body"}) {
        const NoMorphCalled refusal(morph);
        selectBoth();
        EXPECT_NE(messageOf(allJobs()).find("failed to find new morph " + Quoted(morph)), std::string::npos);
    }
    selectBoth();
    convert(allJobs());
    EXPECT_EQ(madeMorphs(), fresh);
}

} // namespace
