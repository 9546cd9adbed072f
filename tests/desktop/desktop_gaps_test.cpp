// How long the window stands still during a conversion, and what it shows meanwhile.
// SPDX-License-Identifier: MIT

#include "host/ui/progress_window.h"
#include "openhost/testing.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/windows/modal_answer.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QThread>
#include <QtTest/QTest>

#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>
#include <dzscene.h>

#include <algorithm>
#include <iostream>
#include <set>

namespace {

constexpr int longestGapMs = 100;

/// Watches the event loop and what is asked of the host between two of its turns, or after a sign of work was
/// painted in one. The first operation of each kind is made to take longer than the window may stand still,
/// so that what is found does not depend on the machine.
class GapWatch : public QObject, private openhost::OperationWatch {
public:
    struct Gap {
        qint64 milliseconds = 0;
        bool hasSign = false;   ///< of work, on the screen from its beginning
        bool hasDelay = false;  ///< made by the watch
        QStringList operations; ///< within it
    };

    GapWatch()
    {
        qApp->installEventFilter(this);
        QAbstractEventDispatcher* const loop = QAbstractEventDispatcher::instance();
        connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, [this] { endGap(); });
        connect(loop, &QAbstractEventDispatcher::awake, this, [this] { beginGap(); });
    }
    ~GapWatch() override { endGap(); }

    /// Since the last turn of the loop as well.
    void finish() { endGap(); }
    const std::vector<Gap>& gaps() const { return _gaps; }
    const QStringList& withoutSign() const { return _withoutSign; }
    std::size_t delayed() const { return _delayed.size(); }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::Hide && qobject_cast<openhost::ProgressWindow*>(object))
            _isPainted = false;
        auto* const widget = qobject_cast<QWidget*>(object);
        if (event->type() == QEvent::Paint && widget &&
            qobject_cast<openhost::ProgressWindow*>(widget->window())) {
            _isPainted = true;
            beginGap();
        }
        return false;
    }

private:
    static bool progressIsVisible()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        return std::any_of(windows.begin(), windows.end(), [](QWidget* window) {
            return window->isVisible() && qobject_cast<openhost::ProgressWindow*>(window);
        });
    }
    bool showsWork() const { return _isPainted && progressIsVisible(); }

    void beginGap()
    {
        endGap();
        _isWatching = true;
        _current = {0, showsWork(), false, {}};
        _since.start();
    }
    void endGap()
    {
        if (_isWatching) {
            _current.milliseconds = _since.elapsed();
            _gaps.push_back(_current);
        }
        _isWatching = false;
    }

    bool allow(openhost::Operation operation, const QString& detail) override
    {
        if (!showsWork())
            _withoutSign.append(detail);
        _current.operations.append(detail);
        if (_delayed.insert(operation).second) {
            _current.hasDelay = true;
            QThread::msleep(longestGapMs + 20);
        }
        return true;
    }

    bool _isPainted = false, _isWatching = false;
    Gap _current;
    QElapsedTimer _since;
    std::vector<Gap> _gaps;
    QStringList _withoutSign;
    std::set<openhost::Operation> _delayed;
};

class DesktopGaps : public DesktopTest {
protected:
    void loadBoth()
    {
        DzFigure& source = openFigure(sourceFile);
        auto& morph = *qobject_cast<DzMorph*>(source.getObject()->findModifier(QStringLiteral("Wide")));
        morph.getValueChannel()->setValue(1.0f);
        DzFigure& target = openFigure(targetFile);
        dzScene->selectAllNodes(false);
        source.select();
        target.select();
    }
    /// All three morphs, so that every step is taken.
    static void chooseAll(QWidget& dialog)
    {
        for (const char* const job : {"FullFigure", "Head", "Body"}) {
            const QString name = QString::fromLatin1(job);
            auto* const box = dialog.findChild<QCheckBox*>(QStringLiteral("pchkCreate%1Morph").arg(name));
            auto* const line = dialog.findChild<QLineEdit*>(QStringLiteral("pled%1MorphName").arg(name));
            ASSERT_TRUE(box && line) << job;
            box->setChecked(true);
            line->setText(QStringLiteral("Vera %1").arg(name));
        }
    }
};

TEST_F(DesktopGaps, are_never_long_during_a_conversion_unless_progress_is_shown)
{
    start();
    loadBoth();
    std::unique_ptr<GapWatch> watch;
    ModalAnswer dialog([&](QWidget& window) {
        chooseAll(window);
        auto* const convert = window.findChild<QPushButton*>(QStringLiteral("pbtnConvert"));
        ASSERT_NE(convert, nullptr);
        watch = std::make_unique<GapWatch>();
        QTest::mouseClick(convert, Qt::LeftButton);
    });
    QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
    ASSERT_TRUE(dialog.seen && watch);
    watch->finish();
    std::size_t longGaps = 0, operations = 0;
    qint64 longest = 0;
    for (const GapWatch::Gap& gap : watch->gaps()) {
        longGaps += gap.milliseconds > longestGapMs;
        longest = std::max(longest, gap.milliseconds);
        operations += static_cast<std::size_t>(gap.operations.size());
        EXPECT_TRUE(gap.milliseconds > longestGapMs || !gap.hasDelay);
        EXPECT_TRUE(gap.hasSign || gap.milliseconds <= longestGapMs || gap.operations.isEmpty())
            << gap.milliseconds << " ms: " << gap.operations.join(QStringLiteral("; ")).toStdString();
    }
    std::cout << watch->gaps().size() << " gaps, " << longGaps << " over " << longestGapMs
              << " ms, the longest " << longest << " ms; " << operations << " operations\n";
    EXPECT_EQ(watch->withoutSign().join(QStringLiteral("\n")).toStdString(), "");
    EXPECT_GT(watch->delayed(), 8u) << "kinds of operations, without which nothing stood still";
    EXPECT_GT(operations, 50u);
}

} // namespace
