// Warning that a morph's name is taken.
// SPDX-License-Identifier: MIT

#include "ks_morph-name-checker.h"

#include "ks_string.h"
#include "tests/host/host_fixture.h"
#include "tests/shared/throws.h"

#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QVBoxLayout>
#include <QtTest/QTest>

#include <dzfloatproperty.h>
#include <dzmorph.h>
#include <dznode.h>
#include <dzobject.h>

namespace {

using kst::str::ToStd;

const int patienceMilliseconds = 20000; // far beyond what a loaded machine needs

class MorphNameChecker : public HostTest {
protected:
    MorphNameChecker()
    {
        auto* const rows = new QVBoxLayout(&window);
        for (QWidget* const widget : std::initializer_list<QWidget*>{&name, &warning, &overwrite})
            rows->addWidget(widget);
    }
    void SetUp() override
    {
        HostTest::SetUp();
        node = makeNode("Anna");
        checker = std::make_unique<kst::MorphNameChecker>(name, warning, overwrite, [this] { ++changes; });
        window.show();
    }
    void TearDown() override { checker.reset(); }

    static DzNode* makeNode(const char* morphName)
    {
        auto* const made = new DzNode;
        made->setObject(new DzObject);
        auto* const morph = new DzMorph;
        morph->setName(QString::fromUtf8(morphName));
        made->getObject()->addModifier(morph);
        dzScene->addNode(made);
        return made;
    }

    bool isWarning() const
    {
        EXPECT_EQ(warning.isVisible(), overwrite.isVisible());
        return warning.isVisible();
    }
    bool comesToWarn(bool expected) const
    {
        return QTest::qWaitFor([&] { return warning.isVisible() == expected; }, patienceMilliseconds);
    }

    QWidget window;
    QLineEdit name;
    QLabel warning{QStringLiteral("There is such a morph.")};
    QCheckBox overwrite{QStringLiteral("Overwrite it")};
    DzNode* node = nullptr;
    int changes = 0;
    std::unique_ptr<kst::MorphNameChecker> checker;
};

TEST_F(MorphNameChecker, is_content_at_first)
{
    EXPECT_FALSE(isWarning());
    EXPECT_TRUE(checker->canWriteToMorph());
    EXPECT_EQ(changes, 0);
}

TEST_F(MorphNameChecker, warns_a_moment_after_the_name_of_a_morph_was_typed)
{
    checker->onSingleSceneNodeSelected(node);
    EXPECT_EQ(changes, 0);
    QElapsedTimer clock;
    clock.start();
    QTest::keyClicks(&name, QStringLiteral("Anna"));
    EXPECT_FALSE(isWarning()) << "not at once";
    ASSERT_TRUE(comesToWarn(true));
    EXPECT_GE(clock.elapsed(), 95) << "the toolkit may fire a timer a twentieth early";
    EXPECT_TRUE(isWarning());
    EXPECT_FALSE(checker->canWriteToMorph());
    EXPECT_GE(changes, 1);
    EXPECT_EQ(ToStd(warning.styleSheet()), "QLabel { font-weight:600; color:#FF9933;  }");
}

TEST_F(MorphNameChecker, checks_once_for_each_letter)
{
    checker->onSingleSceneNodeSelected(node);
    QTest::keyClicks(&name, QStringLiteral("Anna"));
    EXPECT_EQ(changes, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return changes >= 4; }, patienceMilliseconds));
    bool isLater = false;
    QTimer::singleShot(200, qApp, [&] { isLater = true; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return isLater; }, patienceMilliseconds));
    EXPECT_EQ(changes, 4);
}

TEST_F(MorphNameChecker, takes_the_warning_back_when_the_name_changes)
{
    checker->onSingleSceneNodeSelected(node);
    name.setText(QStringLiteral("Anna"));
    ASSERT_TRUE(comesToWarn(true));
    const int changesSoFar = changes;
    QTest::keyClick(&name, Qt::Key_Backspace);
    ASSERT_TRUE(comesToWarn(false));
    EXPECT_FALSE(isWarning());
    EXPECT_TRUE(checker->canWriteToMorph());
    EXPECT_EQ(changes, changesSoFar + 1);
}

TEST_F(MorphNameChecker, lets_a_morph_be_overwritten_once_the_user_says_so)
{
    name.setText(QStringLiteral("Anna"));
    checker->onSingleSceneNodeSelected(node);
    EXPECT_FALSE(checker->canWriteToMorph());
    const int changesSoFar = changes;
    QTest::keyClick(&overwrite, Qt::Key_Space);
    EXPECT_TRUE(checker->canWriteToMorph());
    EXPECT_EQ(changes, changesSoFar + 1);
    QTest::keyClick(&overwrite, Qt::Key_Space);
    EXPECT_FALSE(checker->canWriteToMorph());
    EXPECT_EQ(changes, changesSoFar + 2);
}

TEST_F(MorphNameChecker, wants_names_to_match_exactly)
{
    DzNode* const other = makeNode("\xC3\x84nne");
    checker->onSingleSceneNodeSelected(other);
    for (const char* const text : {"", "\xC3\xA4nne", "\xC3\x84nne ", "Anne"}) {
        name.setText(QString::fromUtf8(text));
        checker->checkIfMorphExists();
        EXPECT_TRUE(checker->canWriteToMorph()) << text;
    }
    EXPECT_EQ(changes, 0) << "nothing was found, and nothing is told";
    name.setText(QString::fromUtf8("\xC3\x84nne"));
    checker->checkIfMorphExists();
    EXPECT_FALSE(checker->canWriteToMorph());
    EXPECT_EQ(changes, 1);
    checker->checkIfMorphExists();
    EXPECT_EQ(changes, 2) << "a morph that is found again is told again";
}

TEST_F(MorphNameChecker, does_not_ask_for_a_name_when_none_is_typed)
{
    checker->onSingleSceneNodeSelected(makeNode(""));
    EXPECT_TRUE(checker->canWriteToMorph());
    EXPECT_EQ(changes, 0);
}

TEST_F(MorphNameChecker, looks_at_the_selected_node_alone)
{
    DzNode* const other = makeNode("Berta");
    name.setText(QStringLiteral("Anna"));
    checker->onSingleSceneNodeSelected(node);
    EXPECT_TRUE(isWarning());
    checker->onSingleSceneNodeSelected(other);
    EXPECT_FALSE(isWarning());
    checker->onSingleSceneNodeSelected(node);
    EXPECT_TRUE(isWarning());
    checker->onSingleSceneNodeSelected(nullptr);
    EXPECT_FALSE(isWarning());
    EXPECT_TRUE(checker->canWriteToMorph());
}

TEST_F(MorphNameChecker, reads_the_morphs_when_a_node_is_selected)
{
    name.setText(QStringLiteral("Anna"));
    checker->onSingleSceneNodeSelected(node);
    const int changesSoFar = changes;
    checker->onSingleSceneNodeSelected(node);
    EXPECT_EQ(changes, changesSoFar) << "the same node again does nothing";
}

TEST_F(MorphNameChecker, stays_with_the_last_node_when_another_cannot_be_read)
{
    DzNode* const broken = makeNode("Berta");
    qobject_cast<DzMorph*>(broken->getObject()->getModifier(0))
        ->addProperty(new DzFloatProperty(QStringLiteral("More"), true, true));
    name.setText(QStringLiteral("Anna"));
    checker->onSingleSceneNodeSelected(node);
    EXPECT_EQ(MessageOf([&] { checker->onSingleSceneNodeSelected(broken); }),
              "expected modifier to have exactly one property");
    EXPECT_TRUE(isWarning());
}

TEST_F(MorphNameChecker, shows_and_hides_its_warning_when_asked)
{
    checker->setMorphExistsWarningVisible(true);
    EXPECT_TRUE(isWarning());
    checker->setMorphExistsWarningVisible(false);
    EXPECT_FALSE(isWarning());
}

TEST_F(MorphNameChecker, may_go_before_its_check_is_due)
{
    checker->onSingleSceneNodeSelected(node);
    name.setText(QStringLiteral("Anna"));
    checker.reset();
    bool isLater = false;
    QTimer::singleShot(200, qApp, [&] { isLater = true; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return isLater; }, patienceMilliseconds));
    EXPECT_EQ(changes, 0);
}

} // namespace
