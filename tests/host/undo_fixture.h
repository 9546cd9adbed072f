// Steps that are taken back and done again, in tests.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzundostack.h"
#include "tests/host/host_fixture.h"
#include "tests/host/undo_scene.h"

#include <QCoreApplication>

/// An event loop's turn ends a step.
inline void EndStep()
{
    QCoreApplication::processEvents();
}

/// Whatever is done is recorded.
class UndoTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        dzUndoStack->setRecording(true);
    }

    /// Does it as one step; its caption, taking back and doing again are as told.
    template <class Work>
    void expectStep(const char* caption, Work work)
    {
        EndStep();
        const std::string before = SceneText();
        work();
        EndStep();
        const std::string after = SceneText();
        EXPECT_NE(before, after) << "the work shows in nothing";
        EXPECT_EQ(dzUndoStack->getUndoCaption().toStdString(), caption);
        EXPECT_TRUE(dzUndoStack->undo());
        EXPECT_EQ(SceneText(), before);
        EXPECT_EQ(dzUndoStack->getRedoCaption().toStdString(), caption);
        EXPECT_TRUE(dzUndoStack->redo());
        EXPECT_EQ(SceneText(), after);
        EXPECT_TRUE(dzUndoStack->undo());
        EXPECT_EQ(SceneText(), before);
        EXPECT_TRUE(dzUndoStack->redo());
    }
};

inline DzFloatProperty* AddDial(DzElement& element, const char* name)
{
    auto* const dial = new DzFloatProperty(QLatin1String(name), true, true);
    element.addProperty(dial);
    return dial;
}

inline DzMorph* NewMorph(const char* name, int vertex)
{
    auto* const morph = new DzMorph;
    morph->setName(QLatin1String(name));
    morph->getDeltas()->addDelta(vertex, DzVec3(0.1f, 0.2f, 0.3f));
    return morph;
}
