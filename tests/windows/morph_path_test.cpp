// Choosing the property-group path of a new morph.
// SPDX-License-Identifier: MIT

#include "ks_dlg_morph-path.h"

#include "ks_help.h"
#include "ks_string.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest/QTest>

#include <dzappsettings.h>
#include <dzfloatproperty.h>
#include <dznode.h>

namespace {

using kst::str::ToStd;

const char* const windowKey = "winpos_morph_path_test";

/// A node with the groups that it is told to have, and no others.
class PathNode : public DzNode {
public:
    explicit PathNode(std::initializer_list<const char*> groups)
    {
        while (getNumProperties() > 0)
            removeProperty(getProperty(0));
        for (const char* const group : groups) {
            auto* const property =
                new DzFloatProperty(QStringLiteral("P%1").arg(getNumProperties()), true, false);
            property->setPath(QString::fromUtf8(group));
            addProperty(property);
        }
    }
};

/// An item with all below it: "Actor(Head Body(Arms))".
std::string Outline(const QTreeWidgetItem& item)
{
    std::string inner;
    for (int i = 0; i < item.childCount(); ++i)
        inner += (i ? " " : "") + Outline(*item.child(i));
    return ToStd(item.text(0)) + (inner.empty() ? "" : "(" + inner + ")");
}

std::string Outline(const QTreeWidget& tree)
{
    std::string all;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        all += (i ? " " : "") + Outline(*tree.topLevelItem(i));
    return all;
}

class MorphPathTree : public HostTest {};

TEST_F(MorphPathTree, shares_what_paths_have_in_common)
{
    PathNode node{"/Actor/Head", "/Actor/Body"};
    QTreeWidget widget;
    kst::MorphPathTree tree(widget);
    tree.insertPathsFromNode(node);
    tree.toTreeWidget();
    EXPECT_EQ(Outline(widget), "Actor(Head Body)");
}

TEST_F(MorphPathTree, keeps_the_order_of_first_insertion)
{
    QTreeWidget widget;
    kst::MorphPathTree tree(widget);
    tree.insertOne({"Z", "b"});
    tree.insertOne({"A"});
    tree.insertOne({"Z", "a"});
    const QTreeWidgetItem* const deepest = tree.insertOne({"Z", "b", "\xC3\x84"});
    EXPECT_EQ(tree.insertOne({"Z", "b", "\xC3\x84"}), deepest);
    EXPECT_EQ(ToStd(deepest->text(0)), "\xC3\x84");
    EXPECT_EQ(tree.insertOne({}), nullptr);
    EXPECT_EQ(widget.topLevelItemCount(), 0) << "not yet";
    tree.toTreeWidget();
    EXPECT_EQ(Outline(widget), "Z(b(\xC3\x84) a) A");
}

TEST_F(MorphPathTree, goes_in_front_of_what_the_widget_has)
{
    QTreeWidget widget;
    widget.addTopLevelItem(new QTreeWidgetItem(QStringList(QStringLiteral("Old"))));
    kst::MorphPathTree tree(widget);
    tree.insertOne({"New"});
    tree.insertOne({"Newer"});
    tree.toTreeWidget();
    EXPECT_EQ(Outline(widget), "New Newer Old");
}

TEST_F(MorphPathTree, leaves_the_widget_alone_when_it_goes_before)
{
    QTreeWidget widget;
    {
        kst::MorphPathTree tree(widget);
        tree.insertOne({"A", "B"});
    }
    EXPECT_EQ(widget.topLevelItemCount(), 0);
}

class MorphPathDialog : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        settings.removeValue(QLatin1String(windowKey));
    }
    void TearDown() override { dialog.reset(); }

    void open(const char* initialPath)
    {
        dialog.reset();
        dialog = std::make_unique<kst::MorphPathDialog>(nullptr, node, initialPath, windowKey);
        dialog->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    QTreeWidget& tree() const
    {
        return *dialog->findChild<QTreeWidget*>(QStringLiteral("pTreeWidgetPropertyPaths"));
    }
    QLineEdit& edit() const
    {
        return *dialog->findChild<QLineEdit*>(QStringLiteral("pledMorphPropertyPath"));
    }
    QPushButton& ok() const
    {
        return *dialog->findChild<QDialogButtonBox*>(QStringLiteral("pButtonBox"))
                    ->button(QDialogButtonBox::Ok);
    }
    std::string current() const
    {
        std::string path;
        for (const QTreeWidgetItem* item = tree().currentItem(); item; item = item->parent())
            path = "/" + ToStd(item->text(0)) + path;
        return path;
    }
    void type(const char* text)
    {
        edit().clear();
        for (const QChar letter : QString::fromUtf8(text))
            QTest::sendKeyEvent(QTest::Click, &edit(), Qt::Key_unknown, letter, Qt::NoModifier);
    }

    DzAppSettings settings{QStringLiteral("Kestrom's Gantrel")};
    PathNode node{"/Actor/Head/Eyes", "/Actor/Body", "/General"};
    std::unique_ptr<kst::MorphPathDialog> dialog;
};

TEST_F(MorphPathDialog, says_what_it_is_for)
{
    open("/Gantrel");
    EXPECT_EQ(ToStd(dialog->windowTitle()),
              "Morph property path \xE2\x80\x94 Kestrom's Gantrel " + kst::daz::MakeExtendedVersionString());
    EXPECT_EQ(ToStd(dialog->objectName()), "MorphPathDialog");
    EXPECT_EQ(
        ToStd(dialog->findChild<QLabel*>(QStringLiteral("plblIntro"))->text()),
        "Here you can select where the slider for the new morph should appear in the \"Properties\" tab. "
        "Alternatively you can manually type in any path in the entry field below.");
    EXPECT_EQ(ToStd(dialog->findChild<QLabel*>(QStringLiteral("plblMorphPath"))->text()), "Morph path:");
    EXPECT_EQ(tree().columnCount(), 1);
    EXPECT_EQ(ToStd(tree().headerItem()->text(0)), "1");
    EXPECT_TRUE(tree().header()->isVisible());
    const auto& grid = *dialog->findChild<QGridLayout*>(QStringLiteral("gridLayout_2"));
    EXPECT_EQ(ToStd(grid.itemAtPosition(0, 0)->widget()->objectName()), "plblMorphPath");
    EXPECT_EQ(grid.itemAtPosition(0, 1)->widget(), &tree());
    EXPECT_EQ(grid.itemAtPosition(1, 1)->widget(), &edit());
    EXPECT_EQ(ToStd(dialog->layout()->objectName()), "verticalLayout");
    const std::string help =
        "<p>Here you can select where the control slider of the morph should appear in the "
        "\xE2\x80\x9CParameters\xE2\x80\x9D pane.</p><p>You can select an existing item from the tree (which "
        "shows the existing property paths of the scene node, or enter any path manually in the line "
        "below.</p>";
    EXPECT_EQ(ToStd(tree().toolTip()), help);
    EXPECT_EQ(ToStd(edit().toolTip()), help);
    SavePicture(*dialog, "morph-path");
}

TEST_F(MorphPathDialog, shows_where_the_user_starts)
{
    for (const char* const path : {"/Actor/Head", "/Actor", "/Elsewhere", "/Else/wh\xC3\xA9re"}) {
        open(path);
        EXPECT_EQ(current(), path);
        EXPECT_EQ(dialog->getPropertyPathFromLineEdit(), path);
        EXPECT_TRUE(tree().visualItemRect(tree().currentItem()).isValid()) << path;
    }
    EXPECT_EQ(Outline(tree()), "Actor(Head(Eyes) Body) General Else(wh\xC3\xA9re)");
}

/// Notes how many items the tree has at each change of the line.
class NotingDialog : public kst::MorphPathDialogBase {
public:
    NotingDialog() : MorphPathDialogBase(nullptr) { initializePropertyPaths(tree, edit); }
    std::vector<int> itemCounts;
    QTreeWidget tree;
    QLineEdit edit;

protected:
    void enableDisableWidgets() override { itemCounts.push_back(tree.topLevelItemCount()); }
};

TEST_F(MorphPathDialog, has_the_path_in_the_line_before_the_tree_is_filled)
{
    NotingDialog noting;
    noting.insertPropertyPaths(node, {"Actor", "Head"});
    EXPECT_EQ(noting.itemCounts, std::vector<int>{0});
    EXPECT_EQ(ToStd(noting.edit.text()), "/Actor/Head");
    EXPECT_EQ(noting.tree.topLevelItemCount(), 2);
}

TEST_F(MorphPathDialog, starts_nowhere_without_a_path)
{
    open("");
    EXPECT_EQ(tree().currentItem(), nullptr);
    EXPECT_EQ(dialog->getPropertyPathFromLineEdit(), "");
    EXPECT_TRUE(ok().isEnabled()) << "until something is chosen or typed";
}

TEST_F(MorphPathDialog, reads_a_path_without_its_slashes_in_order)
{
    open("Actor//Head/");
    EXPECT_EQ(dialog->getPropertyPathFromLineEdit(), "/Actor/Head");
    open("/Actor/ / Head ");
    EXPECT_EQ(dialog->getPropertyPathFromLineEdit(), "/Actor/ / Head ") << "a blank is a part";
}

TEST_F(MorphPathDialog, writes_the_chosen_item_into_the_line)
{
    open("/Gantrel");
    QTreeWidgetItem* const head = tree().topLevelItem(0)->child(0);
    tree().scrollToItem(head->child(0));
    QTest::mouseClick(tree().viewport(), Qt::LeftButton, {}, tree().visualItemRect(head->child(0)).center());
    EXPECT_EQ(ToStd(edit().text()), "/Actor/Head/Eyes");
    tree().setFocus();
    QTest::keyClick(&tree(), Qt::Key_Up);
    EXPECT_EQ(ToStd(edit().text()), "/Actor/Head");
    tree().setCurrentItem(nullptr);
    EXPECT_EQ(ToStd(edit().text()), "");
}

TEST_F(MorphPathDialog, takes_paths_of_six_characters_and_more_that_begin_with_a_slash)
{
    open("/Gantrel");
    EXPECT_TRUE(ok().isEnabled());
    for (const char* const path : {"/Ab", "/Head", "Abcdef", "", "/\xC3\x84\xC3\x84\xC3\x84\xC3\x84"}) {
        type(path);
        EXPECT_FALSE(ok().isEnabled()) << path;
        EXPECT_FALSE(dialog->isPropertyPathValid()) << path;
    }
    for (const char* const path :
         {"/Abcde", "/Heads", "//////", "/\xC3\x84\xC3\x84\xC3\x84\xC3\x84\xC3\x84"}) {
        type(path);
        EXPECT_TRUE(ok().isEnabled()) << path;
        EXPECT_TRUE(dialog->isPropertyPathValid()) << path;
    }
}

TEST_F(MorphPathDialog, says_why_it_refuses_a_path)
{
    node.addProperty(new DzFloatProperty(QStringLiteral("Short"), true, false));
    node.findProperty(QStringLiteral("Short"))->setPath(QStringLiteral("/Head"));
    open("/Gantrel");
    const auto& rule = *dialog->findChild<QLabel*>(QStringLiteral("plblPathRule"));
    EXPECT_FALSE(rule.isVisible());
    const auto found = tree().findItems(QStringLiteral("Head"), Qt::MatchExactly);
    ASSERT_EQ(found.size(), 1);
    tree().setCurrentItem(found.first());
    EXPECT_FALSE(ok().isEnabled());
    EXPECT_TRUE(rule.isVisible());
    EXPECT_EQ(ToStd(rule.text()),
              "A morph path begins with \xE2\x80\x9C/\xE2\x80\x9D and has at least 6 characters.");
    QCoreApplication::processEvents();
    EXPECT_GE(rule.height(), rule.heightForWidth(rule.width())) << "it shows whole";
    SavePicture(*dialog, "morph-path-refused");
    type("/Heads");
    EXPECT_FALSE(rule.isVisible());
}

TEST_F(MorphPathDialog, gives_the_line_as_it_stands)
{
    open("/Gantrel");
    type("/ A//b / ");
    QTest::keyClick(&edit(), Qt::Key_Return);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(dialog->getPropertyPathFromLineEdit(), "/ A//b / ");
    EXPECT_TRUE(settings.containsValue(QLatin1String(windowKey)));
}

TEST_F(MorphPathDialog, can_be_cancelled_by_button_and_key)
{
    open("/Gantrel");
    QTest::mouseClick(FindButton(*dialog, "Cancel"), Qt::LeftButton);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    open("/Gantrel");
    QTest::keyClick(&tree(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(MorphPathDialog, goes_from_the_tree_to_the_line_to_the_buttons)
{
    open("/Gantrel");
    EXPECT_EQ(QApplication::focusWidget(), &edit());
    QTest::keyClick(dialog.get(), Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget(), &tree());
    EXPECT_EQ(ToStd(edit().text()), "/Gantrel") << "looking at the tree changes nothing";
    QTest::keyClick(dialog.get(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &edit());
    QTest::keyClick(dialog.get(), Qt::Key_Tab);
    EXPECT_TRUE(qobject_cast<QPushButton*>(QApplication::focusWidget()));
}

TEST_F(MorphPathDialog, has_the_size_of_its_form)
{
    open("/Gantrel");
    EXPECT_EQ(dialog->width(), 309);
    EXPECT_GE(dialog->height(), 334);
}

TEST_F(MorphPathDialog, can_be_made_narrow_again_when_it_was_wide_the_last_time)
{
    open("/Gantrel");
    const QSize least = dialog->minimumSize();
    EXPECT_LT(least.width(), 400);
    dialog->resize(640, 500);
    QTest::mouseClick(FindButton(*dialog, "Cancel"), Qt::LeftButton);
    open("/Gantrel");
    ASSERT_EQ(dialog->size(), QSize(640, 500)) << "as it was";
    dialog->resize(least);
    EXPECT_EQ(dialog->size(), least);
    EXPECT_EQ(dialog->minimumSize(), least);
}

TEST_F(MorphPathDialog, has_room_for_its_texts_at_a_large_font_too)
{
    const LargeFont large;
    open("/Actor/Head/Eyes");
    SavePicture(*dialog, "morph-path-18pt");
    const auto& intro = *dialog->findChild<QLabel*>(QStringLiteral("plblIntro"));
    EXPECT_GE(intro.height(), intro.heightForWidth(intro.width()));
    EXPECT_GE(tree().height(), 3 * tree().fontMetrics().lineSpacing());
    for (const char* const text : {"OK", "Cancel"}) {
        const QPushButton& button = *FindButton(*dialog, text);
        EXPECT_GT(button.width(), button.fontMetrics().horizontalAdvance(button.text()) +
                                      2 * button.fontMetrics().averageCharWidth())
            << text << " is not at the button's edges";
    }
}

} // namespace
