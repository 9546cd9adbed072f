// What the steps of a conversion do besides their results.
// SPDX-License-Identifier: MIT

#include "tests/plugin/conversion_fixture.h"

#include "gnt_convert-impl.h"
#include "ks_figure-height.h"
#include "ks_morphlist.h"
#include "tests/plugin/mini_scene.h"
#include "tests/shared/throws.h"

#include <QApplication>
#include <QCursor>
#include <QDir>

#include <cmath>
#include <functional>

namespace {

using Impl = GntConverter::Impl;
using Lines = std::vector<std::string>;

/// Looks on before each operation of the host.
class OnLooker : public HostWatch {
public:
    explicit OnLooker(std::function<void(const std::string& operation)> look) : _look(std::move(look)) {}
    bool see(const QString& operation, const QString& detail) override
    {
        _look(operation.toStdString() + " " + detail.toStdString());
        return true;
    }

private:
    std::function<void(const std::string&)> _look;
};

bool BeginsWith(const std::string& text, const std::string& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

bool IsWaitCursorShown()
{
    const QCursor* const cursor = QApplication::overrideCursor();
    return cursor && cursor->shape() == Qt::WaitCursor;
}

struct Watched {
    int operations = 0;
    Lines withoutCursor;
};

/// Runs the work and tells of the host's operations in it.
Watched WatchCursorDuring(const std::function<void()>& work)
{
    Watched watched;
    const OnLooker looker([&watched](const std::string& operation) {
        ++watched.operations;
        if (!IsWaitCursorShown())
            watched.withoutCursor.push_back(operation);
    });
    work();
    return watched;
}

class StepDetails : public ConversionFixture {
protected:
    std::unique_ptr<Impl> makeImpl()
    {
        selectBoth();
        return std::make_unique<Impl>(GntConverter::FindSourceAndTargetInSceneSelected_X());
    }

    static void deleteFiles(const char* stem)
    {
        QDir folder(TestFolder());
        for (const QString& file : folder.entryList({QLatin1String(stem) + QStringLiteral("-*.obj")}))
            folder.remove(file);
    }
};

TEST_F(StepDetails, places_are_taken_over_in_their_order_and_the_height_comes_last)
{
    loadPair(genesis3Female); // all places differ
    const auto impl = makeImpl();
    Lines properties;
    const OnLooker looker([&properties](const std::string& operation) {
        const std::string own = "property Genesis9.";
        if (BeginsWith(operation, own))
            properties.push_back(operation.substr(own.size(), operation.find('=') - own.size()));
    });
    impl->S1_MoveTargetG9ToWorldOrigin();
    EXPECT_EQ(properties, (Lines{"XTranslate", "ZTranslate", "XRotate", "YRotate", "ZRotate", "YTranslate"}));
}

TEST_F(StepDetails, only_the_second_file_of_the_source_is_used)
{
    loadPair(genesis8Female);
    convert(GntJobFlag::Full);
    const MadeMorphs fresh = madeMorphs();
    for (const char* const stem : {"tempg8-src1", "tempg8-src2"}) {
        loadPair(genesis8Female);
        const OnLooker looker([stem](const std::string& operation) {
            if (BeginsWith(operation, "openFile")) // both are written by then
                deleteFiles(stem);
        });
        const std::string message = MessageOf([this] { convert(GntJobFlag::Full); });
        const bool isUsed = message != "(nothing was thrown)";
        EXPECT_EQ(isUsed, stem == std::string("tempg8-src2")) << message;
        EXPECT_TRUE(isUsed || madeMorphs() == fresh) << stem;
    }
}

TEST_F(StepDetails, the_morph_of_the_stock_mesh_is_filed_apart)
{
    loadPair(genesis8Female);
    std::string path;
    const OnLooker looker([&path](const std::string& operation) {
        if (path.empty() && operation == "property Temporary high-res morph.Value=1")
            path = kst::MorphList::FindMorphProperty_X(*dzScene->getPrimarySelection(),
                                                       "Temporary high-res morph")
                       .getPath()
                       .toStdString();
    });
    convert(GntJobFlag::Full);
    EXPECT_EQ(path, "/test morphs");
}

TEST_F(StepDetails, the_thighs_are_put_back_to_a_zero_without_a_sign)
{
    loadPair(genesis8Female);
    convert(GntJobFlag::Full);
    for (const char* const thigh : {"l_thigh", "r_thigh"}) {
        const float degrees = kst::daz::FindBoneProperty(*target, thigh, "ZRotate", true)->getValue();
        EXPECT_EQ(degrees, 0.0f);
        EXPECT_FALSE(std::signbit(degrees)) << "it would show as -0.00";
    }
}

TEST_F(StepDetails, the_wait_cursor_is_shown_from_the_first_operation_of_a_run_to_the_last)
{
    loadPair(genesis8Female);
    GntConverter converter(GntConverter::FindSourceAndTargetInSceneSelected_X());
    const Watched run = WatchCursorDuring([&] {
        converter.run_X(resolution, "any", Lines(3, "/G"), {"Full", "Head", "Body"}, allJobs(), missing);
    });
    EXPECT_GT(run.operations, 50);
    EXPECT_EQ(run.withoutCursor, Lines());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(StepDetails, the_wait_cursor_is_shown_while_a_stock_figure_is_loaded)
{
    loadPair(genesis8Female);
    const auto impl = makeImpl();
    const Watched load = WatchCursorDuring(
        [&] { impl->loadGenesis_X(GntLoadFigure::Genesis8Female, GntResolution::Base, 1); });
    EXPECT_GT(load.operations, 3);
    EXPECT_EQ(load.withoutCursor, Lines());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(StepDetails, the_wait_cursor_is_shown_while_a_height_is_matched)
{
    loadPairInOnePlace(genesis8Female);
    const Watched matching = WatchCursorDuring(
        [&] { kst::daz::AdjustFigureHeight(*target, dial(*target, "body_bs_ProportionHeight"), *source); });
    EXPECT_GT(matching.operations, 0);
    EXPECT_EQ(matching.withoutCursor, Lines());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

} // namespace
