// Standard input and output in place of files.
// SPDX-License-Identifier: MIT

#include "standard_streams.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "base/input_file.h"
#include "base/reason.h"
#include "command.h"
#include "report.h"
#include "temporary_folder.h"

#include <array>
#include <cerrno>

#include <unistd.h>

#include <fmt/format.h>

namespace cli {

std::string InputText(const std::filesystem::path& file)
{
    return IsStandardStream(file) ? "standard input" : FileText(file);
}

std::string ReadStandardInput(std::size_t most)
{
    std::string text;
    std::array<char, 65536> piece{};
    while (true) {
        base::ThrowIfCancelled();
        const ssize_t count = read(STDIN_FILENO, piece.data(), piece.size());
        if (count == 0)
            return text;
        if (count < 0 && errno != EINTR)
            throw base::IoError("cannot read standard input: {}", base::ReasonOf(errno));
        if (count > 0)
            text.append(piece.data(), static_cast<std::size_t>(count));
        if (text.size() > most)
            throw base::FormatError("standard input: is larger than {} bytes", most);
    }
}

void CheckOneAtMost(const std::vector<NamedOption>& options)
{
    const char* taken = nullptr;
    for (const auto& [option, file] : options) {
        if (!IsStandardStream(file))
            continue;
        if (taken)
            throw UsageError(fmt::format("{} and {} are both -, which only one can be", taken, option));
        taken = option;
    }
}

struct OutputFile::Folder {
    TemporaryFolder folder{TemporaryFolder::Lasting::ForRun};
};

OutputFile::OutputFile(const char* option, const std::string& given, const char* made, bool json)
    : _path(given), _isStream(IsStandardStream(given))
{
    if (!_isStream)
        return;
    if (json)
        throw UsageError(
            fmt::format("--json and {} - both ask for standard output, which only one can have", option));
    GiveOutputAway();
    _folder = std::make_unique<Folder>();
    _path = _folder->folder.path() / made;
}

OutputFile::~OutputFile() = default;

void OutputFile::send() const
{
    if (!_isStream)
        return;
    base::InputFile file(_path);
    std::string piece(std::size_t{1} << 20, '\0');
    while (const std::size_t count = file.read(piece.data(), piece.size()))
        WriteOutput({piece.data(), count});
}

} // namespace cli
