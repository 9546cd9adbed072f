// Progress of long work.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <memory>

namespace openhost {
class ProgressDisplay;
} // namespace openhost

/// Nests: the outermost one opens the display, inner ones add to it. The destructor finishes. With windows
/// the display is one, and every change handles events: those of the user only while the work can be
/// cancelled.
class DzProgress {
public:
    /// @param totalSteps  0 for work of unknown length
    DzProgress(const QString& info, int totalSteps = 0, bool isCancellable = false,
               bool showTimeElapsed = false);
    ~DzProgress();

    void step(int count = 1);
    void update(int position);
    void setInfo(const QString& info);
    /// Of the innermost progress.
    static void setCurrentInfo(const QString& info);
    void finish();
    void cancel();
    void enable(bool onOff);
    /// Off: the outermost window stays until the user closes it.
    void setCloseOnFinish(bool onOff);
    /// This progress, or one around it, has been cancelled.
    bool isCancelled() const;

    QString getInfo() const;
    int getPosition() const;
    int getTotalSteps() const;
    static int getDepth();

private:
    DzProgress(const DzProgress&);
    DzProgress& operator=(const DzProgress&);

    static void show();
    static void showOn(openhost::ProgressDisplay& display);

    struct Impl;
    std::unique_ptr<Impl> _impl;
};
