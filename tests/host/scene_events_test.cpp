// What the host tells of, and what tests may refuse.
// SPDX-License-Identifier: MIT

#include "openhost/events.h"

#include "dzelement.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzprogress.h"
#include "dzstringproperty.h"
#include "openhost/attendant.h"
#include "tests/host/host_fixture.h"

#include <algorithm>
#include <stdexcept>

namespace {

using openhost::SceneEdit;

/// Hears the host's edits and texts.
class Ear {
public:
    Ear()
    {
        QObject::connect(
            &openhost::Events(), &openhost::HostEvents::sceneEdited, &_context,
            [this](SceneEdit edit, const DzElement* element) { edits.emplace_back(edit, element); });
        QObject::connect(&openhost::Events(), &openhost::HostEvents::progressTextShown, &_context,
                         [this](const QString& text) { texts.push_back(text.toStdString()); });
    }
    std::vector<std::pair<SceneEdit, const DzElement*>> edits;
    std::vector<std::string> texts;

private:
    QObject _context;
};

using Edits = decltype(Ear::edits);

class Events : public HostTest {};

/// Ends long work at a certain text.
class Ender : public openhost::Attendant {
public:
    void beforeProgress() override
    {
        if (++times == endsAt)
            throw std::runtime_error("ended");
    }
    int times = 0, endsAt = 0;

private:
    openhost::AttendantOverride _answering{*this};
};

} // namespace

TEST_F(Events, tell_of_a_new_label_once_it_is_there)
{
    DzNode* const node = AddNode("a");
    QString label;
    QObject context;
    QObject::connect(&openhost::Events(), &openhost::HostEvents::sceneEdited, &context,
                     [&label, node] { label = node->getLabel(); });
    const Ear ear;
    node->setLabel(QStringLiteral("b"));
    node->setLabel(QStringLiteral("b"));
    EXPECT_EQ(ear.edits, (Edits{{SceneEdit::Label, node}}));
    EXPECT_EQ(label, QStringLiteral("b"));
}

TEST_F(Events, tell_whose_value_is_another_one)
{
    DzNode* const node = AddNode("a");
    auto* const text = new DzStringProperty(QStringLiteral("Text"), false, true);
    node->addProperty(text);
    const Ear ear;
    node->getXPosControl()->setValue(3.0f);
    node->getXPosControl()->setValue(3.0f);
    text->setValue(QStringLiteral("t"));
    text->setValue(QStringLiteral("t"));
    EXPECT_EQ(ear.edits, (Edits{{SceneEdit::Value, node}, {SceneEdit::Value, node}}));
}

TEST_F(Events, tell_of_a_morph_and_not_of_one_that_was_refused)
{
    DzNode* const node = AddNode("a");
    auto* const object = new DzObject;
    node->setObject(object);
    const Ear ear;
    auto* const morph = new DzMorph;
    {
        Recorder recorder;
        recorder.refused = openhost::Operation::AddMorph;
        EXPECT_NE(object->addModifier(morph), DZ_NO_ERROR);
        recorder.refused = openhost::Operation::SetValue;
        node->getXPosControl()->setValue(3.0f);
        recorder.refused = openhost::Operation::Rename;
        node->setLabel(QStringLiteral("b"));
    }
    EXPECT_TRUE(ear.edits.empty());
    EXPECT_EQ(object->addModifier(morph), DZ_NO_ERROR);
    EXPECT_EQ(ear.edits, (Edits{{SceneEdit::Morph, object}}));
}

TEST_F(Events, tell_every_text_of_a_progress)
{
    const Ear ear;
    DzProgress progress(QStringLiteral("one"), 2);
    progress.step();
    progress.setInfo(QStringLiteral("two"));
    EXPECT_EQ(ear.texts, (std::vector<std::string>{"one", "two"}));
}

TEST_F(Events, tell_nothing_of_progress_that_the_attendant_ends)
{
    Ender ender;
    const Ear ear;
    ender.endsAt = 1;
    EXPECT_THROW(DzProgress(QStringLiteral("one")), std::runtime_error);
    EXPECT_EQ(DzProgress::getDepth(), 0) << "nothing is left of it";
    {
        DzProgress progress(QStringLiteral("one"));
        ender.endsAt = 3;
        EXPECT_THROW(progress.setInfo(QStringLiteral("two")), std::runtime_error);
        EXPECT_EQ(progress.getInfo(), QStringLiteral("one"));
    }
    EXPECT_EQ(ear.texts, std::vector<std::string>{"one"});
}

TEST_F(Events, are_the_same_after_a_reset)
{
    Ear ear;
    TestHost().reset();
    DzNode* const node = AddNode("a");
    ear.edits.clear();
    node->setLabel(QStringLiteral("b"));
    EXPECT_EQ(ear.edits, (Edits{{SceneEdit::Label, node}}));
}

TEST_F(Events, of_several_watches_the_newest_is_asked)
{
    Recorder first;
    DzNode* const node = AddNode("a");
    {
        Recorder second;
        second.refused = openhost::Operation::Remove;
        EXPECT_FALSE(dzScene->removeNode(node));
    }
    EXPECT_TRUE(dzScene->removeNode(node));
    EXPECT_EQ(first.lines, (std::vector<std::string>{"rename a -> a", "add a", "remove a"}));
}

TEST_F(Events, nobody_can_keep_nodes_in_a_scene_that_ends)
{
    AddNode("a");
    Recorder recorder;
    recorder.refused = openhost::Operation::Remove;
    TestHost().reset();
    EXPECT_EQ(dzScene->getNumNodes(), 0);
    EXPECT_EQ(std::count(recorder.lines.begin(), recorder.lines.end(), "remove a"), 0);
}
