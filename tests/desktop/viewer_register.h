// A system's register of programs that show files, as a test wants it.
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/host/content_fixture.h"

#include <QFile>
#include <QTemporaryDir>

#include <string>

/// As long as it lives, the system's own register is not asked.
class ViewerRegister {
public:
    ~ViewerRegister() { qputenv("PATH", _path); }

    /// @param types  with "|" between them
    void haveProgramsFor(const std::string& types)
    {
        const QString program = _programs.filePath(QStringLiteral("xdg-mime"));
        WriteBytes(program.toStdString(),
                   "#!/bin/sh\ncase $3 in " + types + ") echo viewer.desktop;; esac\n");
        QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", _programs.path().toUtf8() + ":" + _path);
    }

private:
    const QByteArray _path = qgetenv("PATH");
    QTemporaryDir _programs;
};
