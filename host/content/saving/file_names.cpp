// Names of the user as names of files.
// SPDX-License-Identifier: MIT

#include "saving/file_names.h"

#include "base/device_name.h"
#include "openhost/morph_names.h"

#include <QCryptographicHash>
#include <QString>
#include <QVector>

#include <algorithm>
#include <cstring>

#include <fmt/format.h>

namespace openhost {

namespace {

bool IsUnseen(uint character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Other_PrivateUse:
    case QChar::Other_NotAssigned:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

/// Characters that some file system refuses, or that mean something in a URL.
bool IsSpecial(uint character)
{
    return character < 0x80 && std::strchr("/\\:*?\"<>|%#", static_cast<int>(character));
}

bool IsBlank(uint character)
{
    return QChar::isSpace(character);
}

bool IsDigit(uint character)
{
    return character >= '0' && character <= '9';
}

std::string Encoded(const std::string& bytes)
{
    std::string result;
    for (const char c : bytes)
        result += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    return result;
}

std::string Utf8(uint character)
{
    return QString::fromUcs4(&character, 1).toStdString();
}

/// Where a full stop hides a file or is dropped, and a blank gets lost.
bool IsLostAtEnds(uint character)
{
    return character == '.' || IsBlank(character);
}

/// No longer than this, and not in the middle of a character or of an encoded byte.
std::string Cut(const std::string& name, std::size_t size)
{
    const auto isInside = [&name](std::size_t at) {
        const bool isContinued = (static_cast<unsigned char>(name[at]) & 0xC0) == 0x80;
        return isContinued || name[at - 1] == '%' || name[at - 2] == '%';
    };
    while (size > 2 && isInside(size))
        --size;
    return name.substr(0, size);
}

std::string Sum(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().left(16).toStdString();
}

} // namespace

std::string FileName(const std::string& name)
{
    const QString composed = QString::fromStdString(name).normalized(QString::NormalizationForm_C);
    const auto characters = composed.toUcs4();
    std::string result;
    for (int i = 0; i < characters.size(); ++i) {
        const uint character = characters[i];
        const bool isAtEnd = i == 0 || i == characters.size() - 1;
        // What FileName() itself puts before a digit must not be taken for the user's own.
        const bool looksPut = i == 0 && character == '_' && characters.size() > 1 && IsDigit(characters[1]);
        const bool isEncoded = IsSpecial(character) || IsUnseen(character) || looksPut ||
                               (isAtEnd && IsLostAtEnds(character)) ||
                               (IsBlank(character) && character != ' ') ||
                               (i == 0 && base::IsDeviceName(composed.toStdString()));
        result += isEncoded ? Encoded(Utf8(character)) : Utf8(character);
    }
    if (!result.empty() && IsDigit(static_cast<unsigned char>(result[0])))
        result.insert(0, 1, '_');
    // Other systems' file names end at 255 bytes, and the path has to stay short as well. What is cut off
    // may be all that tells two names apart.
    constexpr std::size_t longest = 100;
    if (result.size() <= longest)
        return result;
    const std::string mark = "_" + Sum(composed.toUtf8());
    return Cut(result, longest - mark.size()) + mark;
}

bool IsBlankName(const QString& name)
{
    const auto characters = name.toUcs4();
    return std::all_of(characters.begin(), characters.end(),
                       [](uint character) { return IsBlank(character) || IsUnseen(character); });
}

} // namespace openhost
