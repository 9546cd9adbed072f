// Text files and folders, as scripts know them.
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QObject>
#include <QScriptable>
#include <QStringList>

/// A file of text, which is UTF-8. What lies outside of the folders that scripts may use is an error of the
/// script, wherever `..` and links lead; other failures are answered with false and error().
class DzFile : public QObject, protected QScriptable {
    Q_OBJECT
    Q_ENUMS(OpenMode)
public:
    enum OpenMode { ReadOnly = 1, WriteOnly = 2, Append = 4 };

    explicit DzFile(const QString& name);
    /// What was written and not closed is put in place.
    ~DzFile() override;

    Q_INVOKABLE QString fileName() const { return _name; }
    Q_INVOKABLE bool exists() const;
    /// A file that is written appears with close(), whole or not at all; Append writes what was there before
    /// it.
    Q_INVOKABLE bool open(int mode = ReadOnly);
    Q_INVOKABLE bool isOpen() const { return _mode != 0; }
    Q_INVOKABLE bool close();
    Q_INVOKABLE bool atEnd() const;      ///< all has been read
    Q_INVOKABLE QString read();          ///< what has not been read yet
    Q_INVOKABLE QString readLine();      ///< without its end; empty at the end of the file
    Q_INVOKABLE QStringList readLines(); ///< those that have not been read yet
    Q_INVOKABLE bool write(const QString& text);
    Q_INVOKABLE bool writeLine(const QString& text);
    Q_INVOKABLE bool remove();
    Q_INVOKABLE QString error() const { return _error; } ///< why the last call failed

private:
    bool fail(const QString& why);
    void load();
    bool isReading();

    QString _name, _text, _error;
    int _mode = 0, _place = 0;
};

/// Names, size and time of a file or folder.
class DzFileInfo : public QObject, protected QScriptable {
    Q_OBJECT
public:
    explicit DzFileInfo(const QString& name) : _info(name) {}

    Q_INVOKABLE QString filePath() const { return _info.filePath(); }
    Q_INVOKABLE QString fileName() const { return _info.fileName(); }
    Q_INVOKABLE QString baseName() const { return _info.baseName(); }                 ///< to the first dot
    Q_INVOKABLE QString completeBaseName() const { return _info.completeBaseName(); } ///< to the last dot
    Q_INVOKABLE QString suffix() const { return _info.suffix(); }
    Q_INVOKABLE QString path() const { return _info.path(); }
    Q_INVOKABLE QString absolutePath() const { return _info.absolutePath(); }
    Q_INVOKABLE QString absoluteFilePath() const { return _info.absoluteFilePath(); }
    Q_INVOKABLE bool exists() const;
    Q_INVOKABLE bool isFile() const;
    Q_INVOKABLE bool isDir() const;
    Q_INVOKABLE double size() const; ///< bytes
    Q_INVOKABLE QDateTime lastModified() const;

private:
    bool isInReach() const;

    QFileInfo _info;
};

/// A folder.
class DzDir : public QObject, protected QScriptable {
    Q_OBJECT
    Q_ENUMS(Filter)
public:
    enum Filter { Dirs = 1, Files = 2, All = 3 };

    explicit DzDir(const QString& name) : _dir(name) {}

    Q_INVOKABLE QString path() const { return _dir.path(); }
    Q_INVOKABLE QString absolutePath() const { return _dir.absolutePath(); }
    Q_INVOKABLE QString dirName() const { return QDir(_dir.absolutePath()).dirName(); }
    Q_INVOKABLE QString filePath(const QString& name) const { return _dir.filePath(name); }
    Q_INVOKABLE QString absoluteFilePath(const QString& name) const { return _dir.absoluteFilePath(name); }
    Q_INVOKABLE bool exists() const;
    Q_INVOKABLE bool exists(const QString& name) const;
    Q_INVOKABLE bool cd(const QString& name);
    Q_INVOKABLE bool cdUp() { return cd(QStringLiteral("..")); }
    /// Names without the folder, sorted; hidden ones are left out.
    /// @param patterns  such as *.duf; all where there are none
    Q_INVOKABLE QStringList entryList(const QStringList& patterns = QStringList(), int filters = All) const;
    /// Makes the folders on the way as well.
    Q_INVOKABLE bool mkpath(const QString& name) const;

private:
    QDir _dir;
};
