// Text between the toolkit and the standard library.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <filesystem>
#include <string>

namespace openhost {

// UTF-8, as in the files.

inline QString ToQ(const std::string& text)
{
    return QString::fromStdString(text);
}

inline std::string ToStd(const QString& text)
{
    return text.toStdString();
}

inline std::filesystem::path ToPath(const QString& text)
{
    return text.toStdString();
}

} // namespace openhost
