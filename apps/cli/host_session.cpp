// The open host as the subcommands use it: without a display, without a trace.
// SPDX-License-Identifier: MIT

#include "host_session.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "base/reason.h"
#include "command.h"
#include "content_places.h"
#include "dzapp.h"
#include "dzauthor.h"
#include "dzcontentmgr.h"
#include "dzfigure.h"
#include "dzscene.h"
#include "name_checks.h"
#include "openhost/attendant.h"
#include "openhost/diagnostics.h"
#include "openhost/openhost.h"
#include "program_folders.h"
#include "report.h"
#include "scene_nodes.h"
#include "setting_origins.h"
#include "standard_streams.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <optional>
#include <set>
#include <stdexcept>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextCodec>

#include <fmt/format.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

QString ToQ(const fs::path& path)
{
    return QString::fromStdString(path.u8string());
}

/// The toolkit's own remarks belong into the log, since stderr is for one sentence.
void LogToolkitMessage(QtMsgType, const QMessageLogContext&, const QString& text)
{
    if (dzApp)
        dzApp->log(text);
}

void CheckDirectory(const fs::path& directory)
{
    CheckContentName(directory);
    std::error_code error;
    if (!fs::is_directory(directory, error))
        throw base::IoError("{}: there is no such content directory{}", FileText(directory),
                            OriginOf(directory.string()));
}

void CheckFile(const fs::path& file)
{
    if (IsStandardStream(file))
        throw UsageError("content is no text on standard input, since it lies in a folder with all that it "
                         "names; ./- is a file of that name");
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (!fs::exists(status))
        throw base::IoError("cannot open {}: {}", FileText(file), base::ReasonOf(ENOENT));
    CheckContentName(fs::absolute(file));
    if (fs::is_directory(status))
        throw base::IoError("cannot read {}: {}", FileText(file), base::ReasonOf(EISDIR));
}

/// Figures before anything else; what is below a node came with it.
std::vector<DzNode*> NewNodes(const std::set<const DzNode*>& before)
{
    std::vector<DzNode*> figures, others;
    for (int i = 0; i < dzScene->getNumNodes(); ++i) {
        DzNode* const node = dzScene->getNode(i);
        if (before.count(node))
            continue;
        if (qobject_cast<DzFigure*>(node))
            figures.push_back(node);
        else if (node->isRootNode())
            others.push_back(node);
    }
    figures.insert(figures.end(), others.begin(), others.end());
    return figures;
}

/// The toolkit makes a folder for the user's session where the system has none; it is to go with the others.
class RuntimeFolder {
public:
    explicit RuntimeFolder(const QString& folder) : _isOurs(qEnvironmentVariableIsEmpty(variable))
    {
        if (_isOurs)
            qputenv(variable, QFile::encodeName(folder));
    }
    ~RuntimeFolder()
    {
        if (_isOurs)
            qunsetenv(variable);
    }
    RuntimeFolder(const RuntimeFolder&) = delete;
    RuntimeFolder& operator=(const RuntimeFolder&) = delete;

private:
    static constexpr const char* variable = "XDG_RUNTIME_DIR";
    bool _isOurs;
};

/// Nobody watches, but somebody may have pressed Ctrl+C.
class InterruptibleAttendant : public openhost::Attendant {
public:
    void beforeProgress() override { base::ThrowIfCancelled(); }
    void beforeReading() override { base::ThrowIfCancelled(); }
    std::optional<bool> mayReplaceFiles(const QStringList& files) override
    {
        const bool mayReplaceAll =
            mayReplace && std::all_of(files.begin(), files.end(), [this](const QString& file) {
                return mayReplace(fs::u8path(file.toStdString()));
            });
        return mayReplaceAll ? std::optional<bool>(true) : std::nullopt;
    }
    void tellMissingFiles(const QStringList& files) override { missing = files; }

    std::function<bool(const fs::path&)> mayReplace;
    QStringList missing; ///< when something was last loaded
};

} // namespace

struct HostSession::Impl {
    explicit Impl(TemporaryFolder::Lasting lasting) : folder(lasting) {}

    QString inFolder(const char* file) const { return ToQ(folder.path() / file); }

    std::vector<fs::path> contentDirectories;
    TemporaryFolder folder;
    RuntimeFolder runtimeFolder{ToQ(folder.path())};
    QtMessageHandler formerHandler = nullptr;
    std::string name = "gantrel";
    std::vector<char*> arguments{&name[0], nullptr};
    int argumentCount = 1;
    InterruptibleAttendant attendant;
    std::unique_ptr<openhost::OpenHost> host;
    std::unique_ptr<openhost::DiagnosticsCollector> diagnostics;
    std::optional<KeptForError> kept;
};

HostSession::HostSession(const std::vector<fs::path>& contentDirectories, bool verbose,
                         TemporaryFolder::Lasting lasting)
{
    std::for_each(contentDirectories.begin(), contentDirectories.end(), CheckDirectory);
    _impl = std::make_unique<Impl>(lasting);
    _impl->contentDirectories = contentDirectories;
    _impl->formerHandler = qInstallMessageHandler(LogToolkitMessage);
    // Content's file names are UTF-8 whatever the locale is, and numbers in files have decimal points.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    openhost::OpenHost::Options options;
    options.settingsFolder = _impl->inFolder("settings");
    options.tempPath = ToQ(_impl->folder.path());
    options.documentationPath = ToQ(app::DocumentationFolder());
    options.logFilename = _impl->inFolder("log.txt");
    options.echoLog = verbose;
    options.terminalProgress = false; // the subcommands have their own
    options.attendant = &_impl->attendant;
    for (const fs::path& directory : contentDirectories)
        options.contentDirectories.append(ToQ(fs::absolute(directory)));
    _impl->host =
        std::make_unique<openhost::OpenHost>(_impl->argumentCount, _impl->arguments.data(), options);
    _impl->diagnostics = std::make_unique<openhost::DiagnosticsCollector>(dzApp->diagnostics());
    _impl->kept.emplace(_impl->diagnostics->all());
    std::setlocale(LC_NUMERIC, "C");
}

HostSession::~HostSession()
{
    _impl->kept.reset();
    _impl->host.reset();
    qInstallMessageHandler(_impl->formerHandler);
}

std::vector<DzNode*> HostSession::open(const fs::path& file)
{
    CheckFile(file);
    const std::set<const DzNode*> before = NodesInScene();
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    _impl->attendant.missing.clear();
    const bool isOpened = dzApp->getContentMgr()->openFile(ToQ(fs::absolute(file)), true);
    base::ThrowIfCancelled();
    std::vector<DzNode*> came = isOpened ? NewNodes(before) : std::vector<DzNode*>();
    if (!came.empty())
        return came;
    const base::Diagnostic* const reason = base::FirstError(met.all());
    if (!isOpened && reason) {
        const QStringList& missing = _impl->attendant.missing;
        throw std::runtime_error(
            base::ToLine(*reason) +
            (missing.isEmpty() ? "" : WhereLooked(_impl->contentDirectories, missing.first())));
    }
    throw std::runtime_error(
        fmt::format(isOpened ? "{}: adds nothing to the scene" : "{}: cannot be opened", FileText(file)));
}

const base::Diagnostics& HostSession::diagnostics() const
{
    return _impl->diagnostics->all();
}

void HostSession::setAuthor(const std::string& name)
{
    dzApp->setCurrentAuthor(DzAuthor(QString::fromStdString(name), QString(), QString()));
}

void HostSession::allowOverwriting(bool isAllowed)
{
    allowReplacing([isAllowed](const fs::path&) { return isAllowed; });
}

void HostSession::allowReplacing(std::function<bool(const fs::path& file)> mayReplace)
{
    _impl->attendant.mayReplace = std::move(mayReplace);
}

fs::path HostSession::temporaryFolder() const
{
    return _impl->folder.path();
}

fs::path FindContentDirectory(const fs::path& file)
{
    std::error_code error;
    fs::path folder = fs::weakly_canonical(file, error).parent_path();
    if (error)
        return {};
    for (;; folder = folder.parent_path()) {
        if (fs::is_directory(folder / "data", error) || fs::is_directory(folder / "People", error))
            return folder;
        if (folder == folder.root_path() || folder.empty())
            return {};
    }
}

std::vector<fs::path> ContentDirectoriesFor(const fs::path& file, const std::vector<fs::path>& given)
{
    if (!given.empty())
        return given;
    const fs::path found = FindContentDirectory(file);
    return found.empty() ? std::vector<fs::path>() : std::vector<fs::path>{found};
}

} // namespace cli
