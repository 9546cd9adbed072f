// A plug-in that plays the user: from two figures to a saved morph, or, in another run, back to that morph.
// SPDX-License-Identifier: MIT

#include "tests/display/screen_user.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iomanip>
#include <stdexcept>
#include <thread>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QTreeWidget>

#include <dzapp.h>
#include <dzbox3.h>
#include <dzfigure.h>
#include <dzfloatslider.h>
#include <dzmainwindow.h>
#include <dzpane.h>
#include <dzplugin.h>
#include <dzscene.h>

#if defined(__clang__)
// The host looks the entry points up by their plain names, and has them return a class.
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif

namespace {

using Key = ScreenUser::Key;

std::string Setting(const char* variable)
{
    return qEnvironmentVariable(variable).toStdString();
}

QWidget* Pane(const char* className)
{
    return dzApp->getInterface()->getPaneMgr()->findPane(QLatin1String(className));
}

template <class Widget>
Widget* In(const QWidget* window, const char* name = nullptr)
{
    return window ? window->findChild<Widget*>(name ? QLatin1String(name) : QString()) : nullptr;
}

/// A button or box by its text, without its mnemonic.
QAbstractButton* ButtonIn(const QWidget* window, const char* text)
{
    if (window)
        for (QAbstractButton* const button : window->findChildren<QAbstractButton*>())
            if (button->text().remove(QLatin1Char('&')) == QLatin1String(text))
                return button;
    return nullptr;
}

/// The visible slider with this label in the Parameters pane.
DzFloatSlider* DialLabelled(const std::string& label)
{
    for (DzFloatSlider* const slider : Pane("DzParametersPane")->findChildren<DzFloatSlider*>())
        if (slider->isVisible() && slider->getLabel() == QString::fromStdString(label))
            return slider;
    return nullptr;
}

DzFigure* SelectedFigure()
{
    return qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
}

void WaitForMainWindow(ScreenUser& user)
{
    user.waitUntil("the main window", [] { return dzApp->getInterface()->isActiveWindow(); });
}

void OpenFromContentLibrary(ScreenUser& user, const std::vector<std::string>& folders,
                            const std::string& file)
{
    WaitForMainWindow(user);
    std::vector<std::string> path;
    for (const std::string& folder : folders) {
        path.push_back(folder);
        const auto tree = [] { return In<QTreeWidget>(Pane("DzContentLibraryPane")); };
        user.click("the folder " + folder, [&] { return PlaceOf(*tree(), path); });
        user.waitUntil("the folder " + folder + " to be current", [&] {
            return tree()->currentItem() && tree()->currentItem()->text(0).toStdString() == folder;
        });
        bool isOpen = false;
        user.look([&] { isOpen = tree()->currentItem()->isExpanded(); });
        if (!isOpen)
            user.press({Key::Right});
    }
    user.doubleClick("the file " + file, [&] {
        auto* const list = In<QListWidget>(Pane("DzContentLibraryPane"));
        const QListWidgetItem* const item =
            list->findItems(QString::fromStdString(file), Qt::MatchExactly).value(0);
        const QRect place = item ? list->visualItemRect(item) : QRect();
        return place.isEmpty() ? QRect()
                               : QRect(list->viewport()->mapToGlobal(place.topLeft()), place.size());
    });
}

/// Into a line that is looked for, in place of what it holds.
void Retype(ScreenUser& user, const std::string& what, const std::function<QLineEdit*()>& find,
            const std::string& text)
{
    user.click(what, [&] { return PlaceOf(find()); });
    user.waitUntil("the cursor in " + what, [&] { return find()->hasFocus(); });
    user.retype(text);
    user.waitUntil("the typed text in " + what, [&] { return find()->text().toStdString() == text; });
}

void PressInMainWindow(ScreenUser& user, const ScreenUser::Keys& held, char letter)
{
    WaitForMainWindow(user);
    user.pressWith(held, letter);
}

void OpenFromMenu(ScreenUser& user, const std::string& file)
{
    PressInMainWindow(user, {Key::Control}, 'o');
    const auto line = [] {
        return In<QLineEdit>(qobject_cast<QFileDialog*>(QApplication::activeModalWidget()), "fileNameEdit");
    };
    Retype(user, "the file's line", line, file);
    user.press({Key::Return});
}

void WaitForFigures(ScreenUser& user, int number)
{
    user.waitUntil(std::to_string(number) + " figures", [number] {
        int figures = 0;
        for (int i = 0; i < dzScene->getNumSkeletons(); ++i)
            figures += qobject_cast<DzFigure*>(dzScene->getSkeleton(i)) ? 1 : 0;
        return figures == number && !QApplication::activeModalWidget();
    });
}

void ClickInScene(ScreenUser& user, const std::string& label, const ScreenUser::Keys& held = {})
{
    user.click(
        label + " in the Scene pane",
        [&] { return PlaceOf(*In<QTreeWidget>(Pane("DzHierarchyPane")), {label}); }, held);
}

void ClickButton(ScreenUser& user, const char* windowTitle, const char* text)
{
    user.click(text, [&] { return PlaceOf(ButtonIn(WindowTitled(windowTitle), text)); });
}

/// Where the selected figure's shape ends.
void WriteExtent(const std::string& file)
{
    std::ofstream out(file);
    out << std::setprecision(9);
    ScreenUser::look([&] {
        const DzBox3 box = SelectedFigure()->getWSBoundingBox();
        for (const DzVec3& corner : {box.getMin(), box.getMax()})
            out << corner.m_x << ' ' << corner.m_y << ' ' << corner.m_z << '\n';
    });
    if (!out.flush())
        throw std::runtime_error("cannot write " + file);
}

void QuitWithoutSaving(ScreenUser& user)
{
    PressInMainWindow(user, {Key::Control}, 'q');
    user.click("the button that discards", [] {
        const auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        return PlaceOf(box ? box->button(QMessageBox::Discard) : nullptr);
    });
}

void ChooseWhatToMake(ScreenUser& user)
{
    constexpr const char* title = "Convert figure";
    user.waitUntil("the height that suits", [] {
        const QWidget* const dialog = WindowTitled(title);
        return dialog && dialog->findChildren<DzFloatSlider*>().last()->getValue() != 0.0f;
    });
    user.takePicture("display-convert");
    // The proportions stay as they are, so that the next run can compare.
    ClickButton(user, title, "Auto-adjust proportional height");
    for (const char* const job : {"Create full figure morph", "Create head morph", "Create body morph"})
        ClickButton(user, title, job);
    Retype(
        user, "the morph's name",
        [] { return In<QLineEdit>(WindowTitled(title), "pledFullFigureMorphName"); }, "Vera Shape");
    ClickButton(user, title, "Convert");
}

void SaveTheMorph(ScreenUser& user)
{
    constexpr const char* title = "Conversion complete";
    user.click("the morph's box", [] { return PlaceOf(ButtonIn(WindowTitled(title), "Vera Shape")); });
    const auto library = [] { return In<QComboBox>(WindowTitled(title), "pcboContentLibrary"); };
    user.click("the content library", [&] { return PlaceOf(library()); });
    user.waitUntil("the list of libraries", [&] { return library()->view()->isVisible(); });
    user.press({Key::End});
    user.press({Key::Return});
    user.waitUntil("the second library", [&] {
        return library()->currentText().toStdString() == Setting("GANTREL_STORY_LIBRARY");
    });
    Retype(
        user, "the vendor", [] { return In<QLineEdit>(WindowTitled(title), "pledVendorName"); }, "Acme");
    ClickButton(user, title, "Save morph assets");
    user.waitUntil("the box that tells of it", [] {
        const auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        return box && box->isActiveWindow() &&
               box->text().contains(QLatin1String("The selected morph has been saved to"));
    });
    user.takePicture("display-saved");
    user.press({Key::Return});
    ClickButton(user, title, "Close");
}

void ConvertAndSave(ScreenUser& user)
{
    OpenFromContentLibrary(user, {"sample", "People", "Genesis 8 Female", "Characters"}, "Vera");
    WaitForFigures(user, 1);
    OpenFromMenu(user, Setting("GANTREL_STORY_TARGET"));
    WaitForFigures(user, 2);
    ClickInScene(user, "Vera");
    ClickInScene(user, "Genesis 9", {Key::Control});
    user.waitUntil("two selected figures", [] { return dzScene->getNumSelectedNodes() == 2; });
    user.takePicture("display-selected");
    PressInMainWindow(user, {Key::Control, Key::Alt}, 'c');
    ChooseWhatToMake(user);

    const auto newDial = [] { return In<DzFloatSlider>(WindowTitled("Conversion complete")); };
    user.dragRight("the new morph's dial", [&] { return PlaceOf(newDial()); });
    user.waitUntil("the dial at its end", [&] { return newDial()->getValue() == 1.0f; });
    ClickButton(user, "Conversion complete", "Show in Parameters");
    user.waitUntil("the dial in the Parameters pane", [] {
        const DzFloatSlider* const dial = DialLabelled("Vera Shape");
        return dial && dial->getValue() == 1.0f && !dial->visibleRegion().isEmpty();
    });
    user.takePicture("display-converted");
    SaveTheMorph(user);
    ClickInScene(user, "Vera converted to G9");
    user.waitUntil("the target", [] { return dzScene->getNumSelectedNodes() == 1 && SelectedFigure(); });
    WriteExtent(Setting("GANTREL_STORY_EXTENT"));
    QuitWithoutSaving(user);
}

void FindAgain(ScreenUser& user)
{
    OpenFromMenu(user, Setting("GANTREL_STORY_TARGET"));
    WaitForFigures(user, 1);
    ClickInScene(user, "Genesis 9");
    Retype(
        user, "the search line", [] { return In<QLineEdit>(Pane("DzParametersPane")); }, "vera shape");
    user.dragRight("the saved morph's dial", [] { return PlaceOf(DialLabelled("Vera Shape")); });
    user.waitUntil("the dial at its end", [] { return DialLabelled("Vera Shape")->getValue() == 1.0f; });
    user.takePicture("display-found");
    WriteExtent(Setting("GANTREL_STORY_EXTENT"));
    QuitWithoutSaving(user);
}

/// Nothing is left to click on after the last click, so the thread ends before the program does.
void Tell(void (*story)(ScreenUser&))
{
    try {
        ScreenUser user;
        story(user);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        ScreenUser::takePicture("display-stuck");
        std::_Exit(3);
    }
}

class StoryPlugin : public DzPlugin {
public:
    StoryPlugin() : DzPlugin(QStringLiteral("User's story")) {}
    ~StoryPlugin() override
    {
        if (_user.joinable())
            _user.join();
    }

protected:
    void startup() override
    {
        const bool isSecond = Setting("GANTREL_STORY") == "find";
        _user = std::thread(Tell, isSecond ? FindAgain : ConvertAndSave);
    }

private:
    std::thread _user;
};

} // namespace

DZ_CUSTOM_PLUGIN_DEFINITION(StoryPlugin)
