// Text files and folders, as scripts know them.
// SPDX-License-Identifier: MIT

#include "file_classes.h"

#include "base/atomic_file.h"
#include "base/errors.h"
#include "base/folders.h"
#include "base/write_bounds.h"
#include "openhost/diagnostics.h"
#include "script_reach.h"
#include "script_text.h"

#include <QScriptContext>
#include <QScriptEngine>

#include <filesystem>

namespace {

std::filesystem::path ToPath(const QString& name)
{
    return name.toStdString();
}

/// What a check throws becomes an error of the script.
template <class Check>
bool Holds(QScriptContext* context, const QString& name, const Check& check)
{
    try {
        check(ToPath(name));
        return true;
    } catch (const base::Error& error) {
        if (context)
            context->throwError(QString::fromStdString(error.what()));
        return false;
    }
}

/// Of sentences, such a name would be the end.
void ThrowIfCut(const std::filesystem::path& file)
{
    if (file.native().find('\0') != std::string::npos)
        throw base::IoError("a NUL is in the name that begins with {}", file.c_str());
}

bool MayRead(QScriptContext* context, const QString& name)
{
    return Holds(context, name, [](const std::filesystem::path& file) {
        ThrowIfCut(file);
        openhost::ThrowIfOutOfReach(file);
    });
}

bool MayWrite(QScriptContext* context, const QString& name)
{
    return Holds(context, name, [](const std::filesystem::path& file) {
        ThrowIfCut(file);
        base::ThrowIfOutOfBounds(file);
    });
}

/// A link is removed itself, wherever it leads, so that it has to be within the bounds as well.
bool MayRemove(QScriptContext* context, const QString& name)
{
    const std::filesystem::path folder = ToPath(name).parent_path();
    return MayWrite(context, name) &&
           MayWrite(context, folder.empty() ? QStringLiteral(".") : QString::fromStdString(folder.string()));
}

} // namespace

DzFile::DzFile(const QString& name) : _name(name) {}

DzFile::~DzFile()
{
    if (isOpen() && !close())
        openhost::Report({base::Severity::Warning, {}, {}, _error.toStdString()});
}

bool DzFile::fail(const QString& why)
{
    _error = why;
    return false;
}

bool DzFile::exists() const
{
    return MayRead(context(), _name) && QFileInfo::exists(_name);
}

void DzFile::load()
{
    // Whoever opens a pipe or a device may wait for ever.
    if (const QFileInfo info(_name); info.exists() && !info.isFile() && !info.isDir())
        throw base::IoError("cannot read {}: it is no file, but a device, pipe or socket",
                            _name.toStdString());
    _text = openhost::ReadScript(_name);
    _place = 0;
}

bool DzFile::open(int mode)
{
    if (isOpen())
        return fail(QStringLiteral("%1 is open already").arg(_name));
    if (mode != ReadOnly && mode != WriteOnly && mode != Append) {
        context()->throwError(QScriptContext::RangeError,
                              QStringLiteral("%1 is no way to open a file").arg(mode));
        return false;
    }
    if (!(mode == ReadOnly ? MayRead(context(), _name) : MayWrite(context(), _name)))
        return false;
    try {
        _text.clear();
        if (mode == ReadOnly || (mode == Append && QFileInfo::exists(_name)))
            load();
        if (mode != ReadOnly)
            base::CheckWritable(ToPath(_name));
    } catch (const base::Error& error) {
        return fail(QString::fromStdString(error.what()));
    }
    _mode = mode;
    return true;
}

bool DzFile::close()
{
    const int mode = std::exchange(_mode, 0);
    if (mode == 0 || mode == ReadOnly)
        return true;
    try {
        base::WriteFileAtomically(ToPath(_name), _text.toStdString());
        return true;
    } catch (const base::Error& error) {
        return fail(QString::fromStdString(error.what()));
    }
}

bool DzFile::isReading()
{
    return _mode == ReadOnly || fail(QStringLiteral("%1 is not open for reading").arg(_name));
}

bool DzFile::atEnd() const
{
    return _place >= _text.size();
}

QString DzFile::read()
{
    if (!isReading())
        return QString();
    const QString rest = _text.mid(_place);
    _place = _text.size();
    return rest;
}

QString DzFile::readLine()
{
    if (!isReading() || atEnd())
        return QString();
    const int found = _text.indexOf(QLatin1Char('\n'), _place), end = found < 0 ? _text.size() : found;
    QString line = _text.mid(_place, end - _place);
    _place = end + 1;
    if (line.endsWith(QLatin1Char('\r')))
        line.chop(1);
    return line;
}

QStringList DzFile::readLines()
{
    QStringList lines;
    while (isReading() && !atEnd())
        lines.append(readLine());
    return lines;
}

bool DzFile::write(const QString& text)
{
    if (_mode != WriteOnly && _mode != Append)
        return fail(QStringLiteral("%1 is not open for writing").arg(_name));
    _text += text;
    return true;
}

bool DzFile::writeLine(const QString& text)
{
    return write(text + QLatin1Char('\n'));
}

bool DzFile::remove()
{
    if (!MayRemove(context(), _name))
        return false;
    QFile file(_name);
    return file.remove() || fail(QStringLiteral("cannot remove %1: %2").arg(_name, file.errorString()));
}

bool DzFileInfo::isInReach() const
{
    return MayRead(context(), _info.filePath());
}

bool DzFileInfo::exists() const
{
    return isInReach() && _info.exists();
}

bool DzFileInfo::isFile() const
{
    return isInReach() && _info.isFile();
}

bool DzFileInfo::isDir() const
{
    return isInReach() && _info.isDir();
}

double DzFileInfo::size() const
{
    return isInReach() ? static_cast<double>(_info.size()) : 0.0;
}

QDateTime DzFileInfo::lastModified() const
{
    return isInReach() ? _info.lastModified() : QDateTime();
}

bool DzDir::exists() const
{
    return MayRead(context(), _dir.path()) && _dir.exists();
}

bool DzDir::exists(const QString& name) const
{
    return MayRead(context(), _dir.filePath(name)) && _dir.exists(name);
}

bool DzDir::cd(const QString& name)
{
    // The toolkit takes back a step through a link by its name, the system by where the link leads.
    const QString place = _dir.filePath(name);
    return MayRead(context(), place) && MayRead(context(), QDir::cleanPath(place)) && _dir.cd(name);
}

QStringList DzDir::entryList(const QStringList& patterns, int filters) const
{
    if (!MayRead(context(), _dir.path()))
        return QStringList();
    QDir::Filters wanted = QDir::NoDotAndDotDot;
    if (filters & Dirs)
        wanted |= QDir::Dirs;
    if (filters & Files)
        wanted |= QDir::Files;
    return _dir.entryList(patterns, wanted, QDir::Name);
}

bool DzDir::mkpath(const QString& name) const
{
    return MayWrite(context(), _dir.filePath(name)) && _dir.mkpath(name);
}
