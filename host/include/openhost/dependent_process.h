// Processes that do not outlive this program.
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>
#include <QProcess>

#include <array>
#include <csignal>

namespace openhost {

/// Goes when this program goes, however that ends: the system sends it SIGTERM then.
class DependentProcess : public QProcess {
public:
    using QProcess::QProcess;

    /// As start(), which leaves a child behind that waits for ever where this program is ended before its
    /// child has begun: signals that end it (SIGHUP, SIGINT, SIGTERM) wait meanwhile. One thread at a time.
    void begin(const QString& program, const QStringList& arguments, OpenMode mode = ReadWrite);

protected:
    void setupChildProcess() override;

private:
    void answerEndings();

    const qint64 _parent = QCoreApplication::applicationPid();
    std::array<struct sigaction, 3> _before; ///< what is done at signals that end, by signal
};

} // namespace openhost
