// Calling host objects by method name.
// SPDX-License-Identifier: MIT

#include "ks_morph-loader.h"
#include "ks_transfer-utility.h"
#include "tests/host/host_fixture.h"
#include "tests/shared/throws.h"

#include <QTimer>

namespace {

class MagicTest : public HostTest {};

/// A wrapper whose table names a method that no timer has.
class WrongTimer : public kst::qt::MagicImpl<QTimer, WrongTimer> {
public:
    explicit WrongTimer(QTimer& timer) : MagicImpl<QTimer, WrongTimer>(timer) {}
    static const std::vector<const char*>& Signatures()
    {
        static const std::vector<const char*> signatures{"start()", "rewind(int)"};
        return signatures;
    }
};

TEST_F(MagicTest, names_the_class_and_the_method_that_it_lacks)
{
    QTimer timer;
    EXPECT_EQ(MessageOf([&] { WrongTimer wrapper(timer); }), "failed to resolve method QTimer::rewind(int)");
    EXPECT_EQ(MessageOf([] { kst::qt::MagicBase::FindQtPropertyOrThrow(QTimer::staticMetaObject, "speed"); }),
              "failed to resolve property QTimer::speed");
}

TEST_F(MagicTest, normalises_signatures_before_looking)
{
    EXPECT_TRUE(
        kst::qt::MagicBase::FindMethodOrThrow(QObject::staticMetaObject, " deleteLater ( ) ").methodIndex() >=
        0);
}

TEST_F(MagicTest, names_a_class_without_a_factory)
{
    EXPECT_EQ(MessageOf([] { kst::qt::MagicBase::CreateInstanceViaFactory_X("DzNothing"); }),
              "cannot find DzNothing factory");
}

TEST_F(MagicTest, finds_every_method_of_morph_loader_pro)
{
    EXPECT_EQ(kst::MorphLoader::Signatures().size(), 67u);
    EXPECT_EQ(kst::MorphLoaderBatch::Signatures().size(), 25u);
    EXPECT_NE(kst::MorphLoader::CreateMlpInstance_X(), nullptr);
    EXPECT_NE(kst::MorphLoaderBatch::CreateMlBatchInstance_X(), nullptr);
}

TEST_F(MagicTest, hands_arguments_over_as_they_are)
{
    const auto loader = kst::MorphLoader::CreateMlpInstance_X();
    loader->setFilename(QLatin1String("a.obj"));
    loader->setDeltaTolerance(0.001f);
    loader->setSubdivisionMaxResolution(9);
    loader->setReverseDeformations(true);
    loader->setOverwriteExisting(kst::MorphLoader::OverwriteMode::DeltasOnly);
    QString file;
    float tolerance = 0.0f;
    int level = 0;
    bool reverse = false;
    QObject* const object = &loader->getObject();
    EXPECT_TRUE(QMetaObject::invokeMethod(object, "getFilename", Q_RETURN_ARG(QString, file)));
    EXPECT_TRUE(QMetaObject::invokeMethod(object, "getDeltaTolerance", Q_RETURN_ARG(float, tolerance)));
    EXPECT_TRUE(QMetaObject::invokeMethod(object, "getSubdivisionMaxResolution", Q_RETURN_ARG(int, level)));
    EXPECT_TRUE(QMetaObject::invokeMethod(object, "getReverseDeformations", Q_RETURN_ARG(bool, reverse)));
    EXPECT_EQ(file, QLatin1String("a.obj"));
    EXPECT_EQ(tolerance, 0.001f);
    EXPECT_EQ(level, 9);
    EXPECT_TRUE(reverse);
}

TEST_F(MagicTest, refuses_a_node_that_the_load_mode_does_not_suit)
{
    DzNode empty;
    EXPECT_EQ(MessageOf([&] {
                  kst::MorphLoaderBatch::Exec_X(&empty, "a.obj", "A", QString(), false, 0, "/A", false, "",
                                                0.0f);
              }),
              "incompatible load mode");
    EXPECT_EQ(MessageOf([] {
                  kst::MorphLoaderBatch::Exec_X(nullptr, "a.obj", "A", QString(), false, 0, "/A", false, "",
                                                0.0f);
              }),
              "incompatible load mode");
    EXPECT_EQ(MessageOf([&] {
                  kst::MorphLoaderBatch::Exec_X(&empty, "a.obj", "A", QLatin1String("{oops"), false, 0, "/A",
                                                false, "", 0.0f);
              }),
              "invalid JSON settings for OBJ importer in Morph Loader Pro");
}

TEST_F(MagicTest, resolves_the_methods_of_the_transfer_utility_once)
{
    const auto first = kst::daz::TransferUtility::Create();
    const auto second = kst::daz::TransferUtility::Create();
    EXPECT_EQ(kst::daz::TransferUtility::getResolveCount(), 1u);
    EXPECT_TRUE(first->setTransferMorphs(true));
    EXPECT_FALSE(second->doTransfer()) << "there is neither source nor target";
}

} // namespace
