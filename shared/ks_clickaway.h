// Answering the host's known pop-ups while an operation runs unattended.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <memory>
#include <set>

#include <QObject>
#include <QString>

class QWidget;

namespace kst {

/// A top-level window as seen at one moment.
struct ToplevelWindow {
    QString objectName; ///< may be empty
    QString windowTitle;
    QWidget* widget; ///< borrowed
};

struct ToplevelWindowLess {
    bool operator()(const std::shared_ptr<ToplevelWindow>& a, const std::shared_ptr<ToplevelWindow>& b) const;
};

/// The application's titled top-level windows; two of the same name and title count as one.
struct Snapshot {
    Snapshot();
    std::set<std::shared_ptr<ToplevelWindow>, ToplevelWindowLess> windows;
};

/// While it exists, looks every 300 ms at windows that were not there when it was made and closes or answers
/// those it knows. It works inside the nested event loops that the host's modal pop-ups run.
class Clickaway : public QObject {
    Q_OBJECT

public:
    /// @param pressFirstButton  of the question about exceeded limits; otherwise the second
    explicit Clickaway(bool pressFirstButton);
    ~Clickaway() override;

    enum Kind { MissingFiles, OpenError, DuplicateFormulas, PresetLimits, DFormOptions, KindCount };
    std::uint64_t handledCount(Kind kind) const { return _handled[kind]; }

private slots:
    void slotTimeout();

private:
    void handle(const ToplevelWindow& window);

    std::uint64_t _handled[KindCount] = {0, 0, 0, 0, 0};
    bool _pressFirstButton;
    class Impl;
    std::unique_ptr<Impl> _pImpl;
};

} // namespace kst
