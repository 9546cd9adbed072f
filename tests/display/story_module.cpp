// A plug-in that plays the user: from two figures to a saved morph, or, in another run, back to that morph.
// SPDX-License-Identifier: MIT

#include "tests/display/story_steps.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <thread>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QGuiApplication>

#include <dzfigure.h>
#include <dzfloatslider.h>
#include <dzplugin.h>
#include <dzscene.h>

#if defined(__clang__)
// The host looks the entry points up by their plain names, and has them return a class.
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif

namespace {

using Key = ScreenUser::Key;

constexpr const char* convert = "Convert figure";
constexpr const char* complete = "Conversion complete";

void ChooseWhatToMake(ScreenUser& user)
{
    user.waitUntil("the height that suits", [] {
        const QWidget* const dialog = WindowTitled(convert);
        return dialog && dialog->findChildren<DzFloatSlider*>().last()->getValue() != 0.0f;
    });
    user.takePicture("display-convert");
    // The proportions stay as they are, so that the next run can compare.
    ClickButton(user, convert, "Auto-adjust proportional height");
    for (const char* const job : {"Create full figure morph", "Create head morph", "Create body morph"})
        ClickButton(user, convert, job);
    Retype(
        user, "the morph's name",
        [] { return In<QLineEdit>(WindowTitled(convert), "pledFullFigureMorphName"); }, "Vera Shape");
    ClickButton(user, convert, "Convert");
}

void SaveTheMorph(ScreenUser& user)
{
    user.click("the morph's box", [] { return PlaceOf(ButtonIn(WindowTitled(complete), "Vera Shape")); });
    const auto library = [] { return In<QComboBox>(WindowTitled(complete), "pcboContentLibrary"); };
    user.click("the content library", [&] { return PlaceOf(library()); });
    user.waitUntil("the list of libraries", [&] { return library()->view()->isVisible(); });
    user.press({Key::End});
    user.press({Key::Return});
    user.waitUntil("the second library", [&] {
        return library()->currentText().toStdString() == Setting("GANTREL_STORY_LIBRARY");
    });
    Retype(
        user, "the vendor", [] { return In<QLineEdit>(WindowTitled(complete), "pledVendorName"); }, "Acme");
    ClickButton(user, complete, "Save morph assets");
    ConfirmSaved(user);
    ClickButton(user, complete, "Close");
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

    const auto newDial = [] { return In<DzFloatSlider>(WindowTitled(complete)); };
    user.dragRight("the new morph's dial", [&] { return PlaceOf(newDial()); });
    user.waitUntil("the dial at its end", [&] { return newDial()->getValue() == 1.0f; });
    ClickButton(user, complete, "Show in Parameters");
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

void WaitForWindow(ScreenUser& user, const char* title)
{
    user.waitUntil(title, [title] {
        const QWidget* const window = WindowTitled(title);
        return window && window->isActiveWindow();
    });
}

void ConvertByKeysAlone(ScreenUser& user)
{
    OpenFromMenu(user, Setting("GANTREL_STORY_SOURCE"));
    WaitForFigures(user, 1);
    OpenFromMenu(user, Setting("GANTREL_STORY_TARGET"));
    WaitForFigures(user, 2);
    PressInMainWindow(user, {Key::Control}, 'a');
    user.waitUntil("two selected figures", [] { return dzScene->getNumSelectedNodes() == 2; });
    PressInMainWindow(user, {Key::Control, Key::Alt}, 'c');
    WaitForWindow(user, convert);
    TabTo(user, "the head morph's box", [] { return ButtonIn(WindowTitled(convert), "Create head morph"); });
    user.press({Key::Space});
    user.press({Key::Return});
    WaitForWindow(user, complete);
    TabTo(user, "the new dial", [] { return In<DzFloatSlider>(WindowTitled(complete)); });
    user.press({Key::End});
    TabTo(user, "the morph's box",
          [] { return ButtonIn(WindowTitled(complete), "Gina converted to G9 Body"); });
    user.press({Key::Space});
    TabTo(user, "the vendor", [] { return In<QLineEdit>(WindowTitled(complete), "pledVendorName"); });
    user.retype("Acme");
    user.press({Key::Return});
    ConfirmSaved(user);
    WaitForWindow(user, complete);
    user.press({Key::Escape});
    QuitWithoutSaving(user);
}

void ConvertInMirroredWindows(ScreenUser& user)
{
    user.waitUntil("mirrored windows", [] { return QGuiApplication::isRightToLeft(); });
    user.waitUntil("panes that have changed sides", [] {
        return PlaceOf(Pane("DzHierarchyPane")).center().x() <
               PlaceOf(Pane("DzContentLibraryPane")).center().x();
    });
    ConvertByKeysAlone(user);
}

void FindAgain(ScreenUser& user)
{
    OpenFromMenu(user, Setting("GANTREL_STORY_TARGET"));
    WaitForFigures(user, 1);
    ClickInScene(user, "Genesis 9");
    WriteExtent(Setting("GANTREL_STORY_EXTENT") + ".bare");
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
        const std::string story = Setting("GANTREL_STORY");
        _user = std::thread(Tell, story == "find"       ? FindAgain
                                  : story == "keys"     ? ConvertByKeysAlone
                                  : story == "mirrored" ? ConvertInMirroredWindows
                                                        : ConvertAndSave);
    }

private:
    std::thread _user;
};

} // namespace

DZ_CUSTOM_PLUGIN_DEFINITION(StoryPlugin)
