// Processes that do not outlive this program.
// SPDX-License-Identifier: MIT

#include "openhost/dependent_process.h"

#include <sys/prctl.h>
#include <unistd.h>

namespace openhost {

namespace {

constexpr std::array<int, 3> endings{SIGHUP, SIGINT, SIGTERM};

volatile std::sig_atomic_t arrived = 0; ///< the last signal that came

void Note(int signal)
{
    arrived = signal;
}

} // namespace

/// Blocking them would not do: they would come to another thread.
void DependentProcess::begin(const QString& program, const QStringList& arguments, OpenMode mode)
{
    arrived = 0;
    struct sigaction noting = {};
    noting.sa_handler = Note;
    noting.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < endings.size(); ++i)
        sigaction(endings[i], &noting, &_before[i]);
    start(program, arguments, mode);
    answerEndings();
}

void DependentProcess::answerEndings()
{
    for (std::size_t i = 0; i < endings.size(); ++i)
        sigaction(endings[i], &_before[i], nullptr);
    if (arrived != 0)
        raise(arrived);
}

void DependentProcess::setupChildProcess()
{
    answerEndings();
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != _parent) // has gone before it was asked for
        raise(SIGTERM);
}

} // namespace openhost
