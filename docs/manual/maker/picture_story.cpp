// The conversion that the manual's pictures show.
// SPDX-License-Identifier: MIT

#include "picture_story.h"

#include "desktop_options.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QToolButton>

#include <dz3dviewport.h>
#include <dzaction.h>
#include <dzactionmgr.h>
#include <dzapp.h>
#include <dzbox3.h>
#include <dzcamera.h>
#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>
#include <dzpane.h>
#include <dzpanemgr.h>
#include <dzscene.h>
#include <dzviewportmgr.h>

#include <functional>
#include <stdexcept>
#include <utility>

namespace manual {

namespace {

constexpr int kPaneWidth = 315;  ///< as in a window of a desktop's size
constexpr int kPatience = 60000; ///< milliseconds, far beyond what a loaded machine needs
constexpr float kApart = 75.0f;  ///< cm, of each figure from the middle

void Require(bool isSo, const char* what)
{
    if (!isSo)
        throw std::runtime_error(what);
}

void WaitUntil(const std::function<bool()>& isSo, const char* what)
{
    QElapsedTimer timer;
    timer.start();
    while (!isSo()) {
        Require(timer.elapsed() < kPatience, what);
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
}

template <class Widget>
Widget& Named(const QWidget& window, const char* name)
{
    auto* const widget = window.findChild<Widget*>(QLatin1String(name));
    Require(widget, name);
    return *widget;
}

QWidget& WindowTitled(const char* title)
{
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowTitle().contains(QLatin1String(title)))
            return *window;
    throw std::runtime_error(title);
}

QAbstractButton& ButtonOf(const QWidget& window, const char* text)
{
    for (auto* const button : window.findChildren<QAbstractButton*>())
        if (button->text() == QLatin1String(text) || button->accessibleName() == QLatin1String(text))
            return *button;
    throw std::runtime_error(text);
}

/// Shows the next modal window to a function and closes it when that has not. What the function throws is
/// kept for rethrow(): the event loop between lets nothing through.
class NextModal {
public:
    explicit NextModal(std::function<void(QWidget&)> look) : _look(std::move(look))
    {
        QObject::connect(&_timer, &QTimer::timeout, [this] { poll(); });
        _timer.start(1);
    }
    void rethrow() const
    {
        if (_failure)
            std::rethrow_exception(_failure);
        Require(!_timer.isActive(), "a dialog did not open");
    }

private:
    void poll()
    {
        const QPointer<QWidget> window = QApplication::activeModalWidget();
        if (!window)
            return;
        _timer.stop();
        try {
            _look(*window);
        } catch (...) {
            _failure = std::current_exception();
        }
        if (auto* const dialog = qobject_cast<QDialog*>(window.data()); dialog && dialog->isVisible())
            dialog->reject();
    }

    std::function<void(QWidget&)> _look;
    QTimer _timer;
    std::exception_ptr _failure;
};

Dz3DViewport& Viewport()
{
    auto* const viewport = dzApp->getInterface()->findChild<Dz3DViewport*>();
    Require(viewport, "there is no viewport");
    return *viewport;
}

constexpr float kUsualReach = 0.6f; ///< of a box from its middle, with a margin; 0.5 would be none

/// Looks at it from the front.
void Frame(DzBox3 box, float shown = kUsualReach)
{
    const DzVec3 reach = box.getSize() * shown;
    box.include(DzBox3(box.getCenter() - reach, box.getCenter() + reach));
    const QSizeF size = Viewport().size();
    Viewport().getCamera()->frame(box, static_cast<float>(size.width() / size.height()));
}

void FrameAll(float shown = kUsualReach)
{
    DzBox3 all;
    for (int i = 0; i < dzScene->getNumNodes(); ++i)
        if (auto* const figure = qobject_cast<DzFigure*>(dzScene->getNode(i)); figure && figure->isVisible())
            all.include(figure->getWSBoundingBox());
    Frame(all, shown);
}

/// Looks at a standing figure's face.
void FrameFace(const DzFigure& figure)
{
    const DzBox3 whole = figure.getWSBoundingBox();
    const float height = whole.getSize().m_y, top = whole.getMax().m_y;
    const DzVec3 middle(whole.getCenter().m_x, top - 0.07f * height, whole.getCenter().m_z);
    const DzVec3 reach(0.06f * height, 0.07f * height, 0.06f * height);
    Frame(DzBox3(middle - reach, middle + reach));
}

/// What the viewport shows, without the view's name above the figure.
QPixmap GrabView()
{
    const QPixmap view = Viewport().grab();
    const int width = view.width() * 7 / 8, height = view.height() * 7 / 8;
    return view.copy((view.width() - width) / 2, (view.height() - height) / 2, width, height);
}

QPixmap Beside(const std::vector<QPixmap>& pictures)
{
    QSize size(0, 0);
    for (const QPixmap& picture : pictures)
        size = QSize(size.width() + picture.width(), std::max(size.height(), picture.height()));
    QPixmap all(size);
    QPainter painter(&all);
    int x = 0;
    for (QPixmap picture : pictures) {
        picture.setDevicePixelRatio(1.0);
        painter.drawPixmap(x, 0, picture);
        x += picture.width();
    }
    return all;
}

QPixmap Below(const QPixmap& above, const QPixmap& below)
{
    QPixmap all(std::max(above.width(), below.width()), above.height() + below.height());
    QPainter painter(&all);
    painter.drawPixmap(0, 0, above);
    painter.drawPixmap(0, above.height(), below);
    return all;
}

} // namespace

PictureStory::PictureStory(desktop::DesktopAttendant& attendant, QString library, QString plugins,
                           QString pictures)
    : _library(std::move(library)), _plugins(std::move(plugins)), _pictures(std::move(pictures)),
      _desktop(attendant)
{
}

void PictureStory::tell()
{
    start();
    showMistake();
    convert();
    showResult();
    showDials();
    Named<QWidget>(Viewport(), "ViewButtons").hide(); // the next pictures are of figures alone
    showSourceAndResult();
    showHeadAndBody();
}

void PictureStory::start()
{
    DzMainWindow& window = *dzApp->getInterface();
    // Of a desktop's usual size; without a display letters are larger. The dialogs can do with those.
    QFont letters = window.font();
    letters.setPointSize(9);
    window.setFont(letters);
    _desktop.show();
    window.resize(1120, 620);
    desktop::Options options;
    options.contentFolders = {_library.toStdString()};
    options.pluginFolder = _plugins.toStdString();
    _desktop.start(options);
    _source = &open("People/Genesis 8 Female/Characters/Vera.duf");
    _target = &open("People/Genesis 9/Genesis 9.duf");
    _source->getXPosControl()->setValue(-kApart);
    _target->getXPosControl()->setValue(kApart);
    FrameAll(0.85f); // away from the view's buttons
}

void PictureStory::showMistake()
{
    dzScene->selectAllNodes(false);
    _source->select(true);
    NextModal box([this](QWidget& window) { save(window.grab(), "error-box"); });
    triggerConversion();
    box.rethrow();
}

void PictureStory::convert()
{
    _target->select(true);
    QCoreApplication::processEvents();
    save(dzApp->getInterface()->grab(), "desktop");
    NextModal dialog([this](QWidget& window) { showConvertDialog(window); });
    triggerConversion();
    dialog.rethrow();
}

void PictureStory::showConvertDialog(QWidget& dialog)
{
    auto& grid = Named<QGridLayout>(dialog, "pgridMorphBases");
    const QLayout& heightRow = *grid.itemAtPosition(3, 1)->layout();
    const auto& height = *qobject_cast<DzFloatSlider*>(heightRow.itemAt(0)->widget());
    const float before = height.getValue();
    WaitUntil([&height, before] { return height.getValue() != before; }, "the height is not matched");
    Named<QCheckBox>(dialog, "pchkCreateFullFigureMorph").setChecked(true);
    Named<QRadioButton>(dialog, "pRadioResolutionBase").setChecked(true);
    Named<QLineEdit>(dialog, "pledFullFigureMorphName").setText(QStringLiteral("Vera"));
    Named<QLineEdit>(dialog, "pledHeadMorphName").setText(QStringLiteral("Vera Head"));
    Named<QLineEdit>(dialog, "pledBodyMorphName").setText(QStringLiteral("Vera Body"));
    save(dialog.grab(), "convert-dialog");
    NextModal picker([this](QWidget& window) { save(window.grab(), "morph-path-dialog"); });
    ButtonOf(dialog, "Pick morph path").click();
    picker.rethrow();
    Named<QPushButton>(dialog, "pbtnConvert").click();
}

void PictureStory::showResult()
{
    QWidget& dialog = WindowTitled("Conversion complete");
    setDial("Vera", 1.0f);
    for (const char* const name : {"Vera", "Vera Head", "Vera Body"})
        ButtonOf(dialog, name).setChecked(true);
    // Readers have folders of their own.
    auto& libraries = Named<QComboBox>(dialog, "pcboContentLibrary");
    libraries.setItemText(0, QStringLiteral("/home/vera/My Library"));
    Named<QLineEdit>(dialog, "pledVendorName").setText(QStringLiteral("Vera Novak"));
    Named<QLineEdit>(dialog, "pledProductName").setText(QStringLiteral("My Shapes"));
    save(dialog.grab(), "success-dialog");
    ButtonOf(dialog, "Show in Parameters").click();
    ButtonOf(dialog, "Close").click();
}

void PictureStory::showDials()
{
    DzMainWindow& window = *dzApp->getInterface();
    QWidget* const pane = window.getPaneMgr()->findPane(QStringLiteral("DzParametersPane"));
    Require(pane, "there is no Parameters pane");
    QDockWidget* const dock = qobject_cast<QDockWidget*>(pane->parentWidget());
    Require(dock, "the Parameters pane stands alone");
    window.resizeDocks({dock}, {kPaneWidth}, Qt::Horizontal);
    for (int i = 0; i < 3; ++i) // the rows follow the pane, and their places follow the rows
        QCoreApplication::processEvents();
    save(pane->grab(), "parameters");
}

/// Each for itself, so that both stand in the middle.
void PictureStory::showSourceAndResult()
{
    setDial("Vera", 1.0f);
    dzScene->selectAllNodes(false);
    std::vector<QPixmap> views, faces;
    for (DzFigure* const shown : {_source, _target}) {
        _source->setVisible(shown == _source);
        _target->setVisible(shown == _target);
        Frame(shown->getWSBoundingBox());
        views.push_back(GrabView());
        FrameFace(*shown);
        faces.push_back(GrabView());
    }
    save(Below(Beside(views), Beside(faces)), "source-and-result");
}

void PictureStory::showHeadAndBody()
{
    _source->setVisible(false);
    setDial("Vera", 0.0f);
    dzScene->selectAllNodes(false);
    std::vector<QPixmap> views, faces;
    for (const auto& [head, body] : {std::pair(1.0f, 0.0f), std::pair(0.0f, 1.0f), std::pair(1.0f, 1.0f)}) {
        // The same frame for all three: that of the plain figure.
        setDial("Vera Head", 0.0f);
        setDial("Vera Body", 0.0f);
        FrameAll();
        setDial("Vera Head", head);
        setDial("Vera Body", body);
        views.push_back(GrabView());
        FrameFace(*_target);
        faces.push_back(GrabView());
    }
    save(Below(Beside(views), Beside(faces)), "head-and-body");
}

DzFigure& PictureStory::open(const char* relativePath)
{
    const QString file = dzApp->getContentMgr()->getAbsolutePath(QLatin1String(relativePath), true);
    Require(_desktop.files().openFile(file), relativePath);
    auto* const figure = qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
    Require(figure, relativePath);
    return *figure;
}

void PictureStory::setDial(const char* morph, float value)
{
    auto* const made = qobject_cast<DzMorph*>(_target->getObject()->findModifier(QLatin1String(morph)));
    Require(made, morph);
    made->getValueChannel()->setValue(value);
}

void PictureStory::triggerConversion()
{
    DzAction* const action =
        dzApp->getInterface()->getActionMgr()->findAction(QStringLiteral("GntConvertFigureAction"));
    Require(action, "the plug-in has no action");
    action->trigger();
}

void PictureStory::save(const QPixmap& picture, const char* name) const
{
    Require(picture.save(QStringLiteral("%1/%2.png").arg(_pictures, QLatin1String(name))), name);
}

} // namespace manual
