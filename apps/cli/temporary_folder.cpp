// The folder of one run.
// SPDX-License-Identifier: MIT

#include "temporary_folder.h"

#include "base/process_mark.h"
#include "base/reason.h"
#include "command.h"

#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include <QDir>
#include <QFile>

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

const std::string beginning = "gantrel-", freeLetters = "-XXXXXX";

/// The mark of the process in a folder's name; empty for other names.
std::string MarkIn(const std::string& name)
{
    const std::size_t around = beginning.size() + freeLetters.size();
    if (name.size() <= around || name.compare(0, beginning.size(), beginning) != 0)
        return {};
    return name.substr(beginning.size(), name.size() - around);
}

/// A link that somebody laid out under such a name leads anywhere.
bool IsOwnFolder(const fs::path& path)
{
    struct stat found {};
    return lstat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == geteuid();
}

fs::path Parent()
{
    return QFile::encodeName(QDir::tempPath()).toStdString();
}

void RemoveThoseOfEndedRuns(const fs::path& parent)
{
    std::error_code error;
    std::vector<fs::path> old;
    for (fs::directory_iterator entry(parent, error), end; !error && entry != end; entry.increment(error))
        if (base::HasEnded(MarkIn(entry->path().filename().string())) && IsOwnFolder(entry->path()))
            old.push_back(entry->path());
    for (const fs::path& folder : old)
        fs::remove_all(folder, error);
}

fs::path Make(const fs::path& parent, const std::string& mark)
{
    std::string path = (parent / (beginning + mark + freeLetters)).string();
    if (!mkdtemp(path.data()))
        throw std::runtime_error(
            fmt::format("cannot make a temporary folder in {}: {}", FileText(parent), base::ReasonOf(errno)));
    return path;
}

} // namespace

TemporaryFolder::TemporaryFolder(Lasting lasting) : _lasting(lasting)
{
    const fs::path parent = Parent();
    RemoveThoseOfEndedRuns(parent);
    // Without a mark nobody can tell that its run has ended.
    _path = Make(parent, lasting == Lasting::Kept ? "kept" : base::ProcessMark());
}

void TemporaryFolder::removeThoseOfEndedRuns()
{
    RemoveThoseOfEndedRuns(Parent());
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    if (_lasting == Lasting::ForRun)
        fs::remove_all(_path, ignored);
}

} // namespace cli
