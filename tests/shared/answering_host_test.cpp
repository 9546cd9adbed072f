// Hosts of other versions: methods that answer, and methods that do not.
// SPDX-License-Identifier: MIT

#include "tests/shared/answering_host.h"

#include "dzclassfactory.h"
#include "ks_morph-loader.h"
#include "ks_string.h"
#include "ks_transfer-utility.h"
#include "openhost/testing.h"
#include "tests/host/host_fixture.h"
#include "tests/shared/stand_in.h"

#include <cstdio>
#include <cstdlib>

namespace {

/// Hosts are tried in processes of their own, since a wrapper class looks for its methods once in a process.
class AnsweringHostDeathTest : public HostTest {
protected:
    AnsweringHostDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

std::string Digits(const std::vector<bool>& answers)
{
    std::string digits;
    for (const bool answer : answers)
        digits += answer ? '1' : '0';
    return digits;
}

[[noreturn]] void Report(const std::string& answers)
{
    std::fprintf(stderr, "[%s: %s]", answers.c_str(), kst::str::Implode(", ", answering::calls).c_str());
    std::_Exit(0);
}

template <class Host>
[[noreturn]] void ReportTransfer(bool answer)
{
    answering::answer = answer;
    const FactoryOf<Host> factory;
    const openhost::ClassFactoryOverride override(QLatin1String("DzTransferUtility"), &factory);
    const auto utility = kst::daz::TransferUtility::Create();
    DzNode node;
    const std::vector<bool> answers{
        utility->setSource(&node),
        utility->setTarget(nullptr),
        utility->setParentToFigure(false),
        utility->setTransferBinding(true),
        utility->setTransferSelectionMap(true),
        utility->setTransferFaceGroups(true),
        utility->setTransferRegionGroups(true),
        utility->setTransferMorphs(true),
        utility->setTransferSourceMorphs(kst::daz::TransferUtility::SourceMorphTransferType::NameList),
        utility->setOverrideExistingMorphs(true),
        utility->setTargetReplacesSource(false),
        utility->doTransfer()};
    utility->setMorphTransferList(QStringList() << QLatin1String("A") << QLatin1String("B"));
    Report(Digits(answers));
}

const std::string transferCalls =
    ": source object, target null, parent off, binding on, selection on, faces on, regions on, morphs on, "
    "which 1, override on, replaces off, transfer on, list A\\+B\\]";

TEST_F(AnsweringHostDeathTest, is_heard_by_the_transfer_utility)
{
    EXPECT_EXIT(ReportTransfer<answering::BoolTransfer>(true), testing::ExitedWithCode(0),
                "\\[111111111111" + transferCalls);
    EXPECT_EXIT(ReportTransfer<answering::BoolTransfer>(false), testing::ExitedWithCode(0),
                "\\[000000000000" + transferCalls);
}

TEST_F(AnsweringHostDeathTest, counts_as_content_when_its_transfer_utility_answers_nothing)
{
    EXPECT_EXIT(ReportTransfer<answering::SilentTransfer>(false), testing::ExitedWithCode(0),
                "\\[111111111111" + transferCalls);
}

template <class Host>
[[noreturn]] void ReportLoader(bool answer)
{
    answering::answer = answer;
    const FactoryOf<Host> factory;
    const openhost::ClassFactoryOverride override(QLatin1String("DzMorphLoader"), &factory);
    const auto loader = kst::MorphLoader::CreateMlpInstance_X();
    typedef kst::MorphLoader Loader;
    Report(Digits({loader->setLoadMode(Loader::LoadMode::PrimaryNode, nullptr),
                   loader->setFilename(QLatin1String("a.obj")), loader->setMorphName(QLatin1String("A")),
                   loader->setPropertyGroupPath(QLatin1String("/B")),
                   loader->setAttenuateMapPath(QLatin1String("c.map")), loader->setAttenuateStrength(0.5f),
                   loader->setDeltaTolerance(0.25f), loader->setCleanUpOrphans(true),
                   loader->setCreateControlProperty(false), loader->setMorphSubdivision(true),
                   loader->setReverseDeformations(false), loader->setSubdivisionSmoothCage(true),
                   loader->setSubdivisionBuiltResolution(2), loader->setSubdivisionMinResolution(1),
                   loader->setSubdivisionMaxResolution(9),
                   loader->setSubdivisionMapping(Loader::SubdMapping::Catmark),
                   loader->setOverwriteExisting(Loader::OverwriteMode::DeltasOnly),
                   loader->setMorphMirroring(Loader::MirroringType::DoNotMirror)}));
}

const std::string loaderCalls =
    ": mode 2, file a.obj, name A, path /B, map c.map, strength 0.5, tolerance 0.25, orphans on, control "
    "off, "
    "subdivision on, reverse off, smooth on, built 2, min 1, max 9, mapping 0, overwrite 2, mirroring 0\\]";

TEST_F(AnsweringHostDeathTest, is_heard_by_the_morph_loader)
{
    EXPECT_EXIT(ReportLoader<answering::BoolLoader>(true), testing::ExitedWithCode(0),
                "\\[111111111111111111" + loaderCalls);
    EXPECT_EXIT(ReportLoader<answering::BoolLoader>(false), testing::ExitedWithCode(0),
                "\\[000000000000000000" + loaderCalls);
}

TEST_F(AnsweringHostDeathTest, counts_as_content_when_its_morph_loader_answers_nothing)
{
    EXPECT_EXIT(ReportLoader<answering::SilentLoader>(false), testing::ExitedWithCode(0),
                "\\[111111111111111111" + loaderCalls);
}

template <class Host>
[[noreturn]] void ReportBatch()
{
    const FactoryOf<Host> factory;
    const openhost::ClassFactoryOverride override(QLatin1String("DzMorphLoaderBatch"), &factory);
    const FactoryOf<answering::SilentLoader> loaders;
    const openhost::ClassFactoryOverride loaderOverride(QLatin1String("DzMorphLoader"), &loaders);
    const auto batch = kst::MorphLoaderBatch::CreateMlBatchInstance_X();
    const auto loader = kst::MorphLoader::CreateMlpInstance_X();
    batch->addMorph(*loader);
    Report(kst::str::ToStd(batch->createMorphs(nullptr, nullptr, false, true)));
}

TEST_F(AnsweringHostDeathTest, tells_what_became_of_the_morphs_if_it_can)
{
    EXPECT_EXIT(ReportBatch<answering::TextBatch>(), testing::ExitedWithCode(0),
                "\\[one morph: add object, all on\\]");
    EXPECT_EXIT(ReportBatch<answering::SilentBatch>(), testing::ExitedWithCode(0),
                "\\[: add object, all on\\]");
}

[[noreturn]] void ReportExec(bool answer)
{
    answering::answer = answer;
    const FactoryOf<answering::SilentLoader> silent;
    const FactoryOf<answering::BoolLoader> answering;
    const openhost::ClassFactoryOverride loader(
        QLatin1String("DzMorphLoader"), answer ? static_cast<const DzClassFactory*>(&silent) : &answering);
    const FactoryOf<answering::SilentBatch> batches;
    const openhost::ClassFactoryOverride batch(QLatin1String("DzMorphLoaderBatch"), &batches);
    DzNode node;
    std::string result;
    try {
        result = kst::MorphLoaderBatch::Exec_X(&node, "a.obj", "A", QString(), false, 0, "/B", false, "c.map",
                                               -1.0f);
    } catch (const std::exception& error) {
        result = error.what();
    }
    Report(result);
}

TEST_F(AnsweringHostDeathTest, makes_a_morph_although_no_method_answers)
{
    EXPECT_EXIT(ReportExec(true), testing::ExitedWithCode(0),
                "\\[: mode 2, file a.obj, name A, subdivision off, built 0, min 0, max 9, smooth off, "
                "mapping 0, tolerance 0.001, control off, path /B, reverse off, overwrite 2, orphans on, "
                "mirroring 0, map c.map, strength -1, add object, all on\\]");
    EXPECT_EXIT(ReportExec(false), testing::ExitedWithCode(0), "\\[incompatible load mode: mode 2\\]");
}

} // namespace
