// What users do again and again in the desktop application.
// SPDX-License-Identifier: MIT

#include "tests/display/story_steps.h"

#include <fstream>
#include <iomanip>
#include <stdexcept>

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QListWidget>
#include <QMessageBox>
#include <QTreeWidget>

#include <dzapp.h>
#include <dzbox3.h>
#include <dzfigure.h>
#include <dzfloatslider.h>
#include <dzmainwindow.h>
#include <dzpane.h>
#include <dzscene.h>

namespace {

using Key = ScreenUser::Key;

constexpr int mostTabs = 100;

} // namespace

std::string Setting(const char* variable)
{
    return qEnvironmentVariable(variable).toStdString();
}

QWidget* Pane(const char* className)
{
    return dzApp->getInterface()->getPaneMgr()->findPane(QLatin1String(className));
}

QAbstractButton* ButtonIn(const QWidget* window, const char* text)
{
    if (window)
        for (QAbstractButton* const button : window->findChildren<QAbstractButton*>())
            if (button->text().remove(QLatin1Char('&')) == QLatin1String(text))
                return button;
    return nullptr;
}

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

void TabTo(ScreenUser& user, const std::string& what, const std::function<QWidget*()>& find)
{
    const auto hasFocus = [&] { return find() && find()->isActiveWindow() && find()->hasFocus(); };
    for (int i = 0; i < mostTabs; ++i) {
        bool isThere = false;
        const QWidget* before = nullptr;
        user.look([&] {
            isThere = hasFocus();
            before = QApplication::focusWidget();
        });
        if (isThere)
            return;
        user.press({Key::Tab});
        user.waitUntil("the next place after Tab", [&] { return QApplication::focusWidget() != before; });
    }
    throw std::runtime_error("cannot be reached by the Tab key: " + what);
}

void OpenFromMenu(ScreenUser& user, const std::string& file)
{
    PressInMainWindow(user, {Key::Control}, 'o');
    const auto line = [] {
        return In<QLineEdit>(qobject_cast<QFileDialog*>(QApplication::activeModalWidget()), "fileNameEdit");
    };
    user.waitUntil("the file's line", [&] { return line() && line()->hasFocus(); });
    user.retype(file);
    user.waitUntil("the typed file", [&] { return line()->text().toStdString() == file; });
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

void ClickInScene(ScreenUser& user, const std::string& label, const ScreenUser::Keys& held)
{
    user.click(
        label + " in the Scene pane",
        [&] { return PlaceOf(*In<QTreeWidget>(Pane("DzHierarchyPane")), {label}); }, held);
}

void ClickButton(ScreenUser& user, const char* windowTitle, const char* text)
{
    user.click(text, [&] { return PlaceOf(ButtonIn(WindowTitled(windowTitle), text)); });
}

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

void ConfirmSaved(ScreenUser& user)
{
    user.waitUntil("the box that tells of it", [] {
        const auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        return box && box->isActiveWindow() &&
               box->text().contains(QLatin1String("The selected morph has been saved to"));
    });
    user.takePicture("display-saved");
    user.press({Key::Return});
}

void QuitWithoutSaving(ScreenUser& user)
{
    PressInMainWindow(user, {Key::Control}, 'q');
    TabTo(user, "the button that discards", []() -> QWidget* {
        const auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        return box ? box->button(QMessageBox::Discard) : nullptr;
    });
    user.press({Key::Space});
}
