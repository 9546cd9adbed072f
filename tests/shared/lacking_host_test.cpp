// Hosts of other versions: a class that cannot be made, or that lacks one method.
// SPDX-License-Identifier: MIT

#include "tests/shared/lacking_host.h"

#include "dzclassfactory.h"
#include "ks_morph-loader.h"
#include "ks_obj-settings.h"
#include "ks_transfer-utility.h"
#include "openhost/testing.h"
#include "tests/host/host_fixture.h"
#include "tests/shared/stand_in.h"
#include "tests/shared/throws.h"

#include <cstdio>
#include <cstdlib>

namespace {

/// Makes nothing.
class EmptyFactory : public DzClassFactory {
public:
    EmptyFactory() : DzClassFactory(&QObject::staticMetaObject, DzGuid()) {}
    QObject* createInstance() const override { return nullptr; }
    QObject* createInstance(const QVariantList&) const override { return nullptr; }
};

/// What a first use says in a host whose class is another. The process ends, since a wrapper class looks for
/// its methods once in a process, at its first use.
template <class T, class Use>
[[noreturn]] void ReportFirstUse(const char* className, const Use& use)
{
    const FactoryOf<T> factory;
    const openhost::ClassFactoryOverride override(QLatin1String(className), &factory);
    std::fprintf(stderr, "[%s]", MessageOf(use).c_str());
    std::_Exit(0);
}

class LackingHostTest : public HostTest {};

class LackingHostDeathTest : public HostTest {
protected:
    LackingHostDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

constexpr auto MakeLoader = [] { kst::MorphLoader::CreateMlpInstance_X(); };
constexpr auto MakeBatch = [] { kst::MorphLoaderBatch::CreateMlBatchInstance_X(); };
constexpr auto MakeTransfer = [] { kst::daz::TransferUtility::Create(); };

TEST_F(LackingHostTest, has_no_such_class)
{
    const openhost::ClassFactoryOverride loader(QLatin1String("DzMorphLoader"), nullptr);
    const openhost::ClassFactoryOverride batch(QLatin1String("DzMorphLoaderBatch"), nullptr);
    const openhost::ClassFactoryOverride transfer(QLatin1String("DzTransferUtility"), nullptr);
    EXPECT_EQ(MessageOf(MakeLoader), "cannot find DzMorphLoader factory");
    EXPECT_EQ(MessageOf(MakeBatch), "cannot find DzMorphLoaderBatch factory");
    EXPECT_EQ(MessageOf(MakeTransfer), "cannot find DzTransferUtility class factory");
}

TEST_F(LackingHostTest, has_a_factory_that_fails)
{
    const EmptyFactory empty;
    const openhost::ClassFactoryOverride loader(QLatin1String("DzMorphLoader"), &empty);
    const openhost::ClassFactoryOverride batch(QLatin1String("DzMorphLoaderBatch"), &empty);
    const openhost::ClassFactoryOverride transfer(QLatin1String("DzTransferUtility"), &empty);
    EXPECT_EQ(MessageOf(MakeLoader), "DzMorphLoader factory failed to create object");
    EXPECT_EQ(MessageOf(MakeBatch), "DzMorphLoaderBatch factory failed to create object");
    EXPECT_EQ(MessageOf(MakeTransfer), "DzTransferUtility factory failed to create object");
}

TEST_F(LackingHostTest, is_whole_again_when_the_stand_in_goes)
{
    {
        const openhost::ClassFactoryOverride loader(QLatin1String("DzMorphLoader"), nullptr);
        EXPECT_EQ(dzApp->findClassFactory(QLatin1String("DzMorphLoader")), nullptr);
    }
    EXPECT_NE(dzApp->findClassFactory(QLatin1String("DzMorphLoader")), nullptr);
}

TEST_F(LackingHostDeathTest, is_told_at_the_first_use_which_method_it_lacks)
{
    EXPECT_EXIT(ReportFirstUse<lacking::NoMethods>("DzMorphLoader", MakeLoader), testing::ExitedWithCode(0),
                "\\[failed to resolve method lacking::NoMethods::createMorph\\(DzFileIOSettings\\*,DzNode\\*,"
                "bool,bool\\)\\]");
    EXPECT_EXIT(ReportFirstUse<lacking::NoMethods>("DzMorphLoaderBatch", MakeBatch),
                testing::ExitedWithCode(0),
                "\\[failed to resolve method lacking::NoMethods::morphListChanged\\(\\)\\]");
    EXPECT_EXIT(ReportFirstUse<lacking::NoDoTransfer>("DzTransferUtility", MakeTransfer),
                testing::ExitedWithCode(0),
                "\\[failed to resolve method lacking::NoDoTransfer::doTransfer\\(\\)\\]");
}

TEST_F(LackingHostDeathTest, is_told_before_any_option_is_set)
{
    EXPECT_EXIT(
        {
            const FactoryOf<lacking::NoDoTransfer> factory;
            const openhost::ClassFactoryOverride override(QLatin1String("DzTransferUtility"), &factory);
            MessageOf(MakeTransfer);
            std::fprintf(stderr, "[made %d, set %d]", factory.made, lacking::NoDoTransfer::calls);
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "\\[made 1, set 0\\]");
}

TEST_F(LackingHostTest, gets_no_loader_for_settings_that_cannot_be_read)
{
    const FactoryOf<lacking::NoMethods> factory;
    const openhost::ClassFactoryOverride override(QLatin1String("DzMorphLoader"), &factory);
    DzNode node;
    EXPECT_EQ(MessageOf([&] {
                  kst::MorphLoaderBatch::Exec_X(&node, "a.obj", "A", QLatin1String("{oops"), false, 0, "/A",
                                                false, "", 0.0f);
              }),
              "invalid JSON settings for OBJ importer in Morph Loader Pro");
    EXPECT_EQ(factory.made, 0);
}

} // namespace
