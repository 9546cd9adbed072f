// Standard input and output in place of files.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace cli {

/// What stands for standard input or output instead of a file's name.
constexpr const char* standardStream = "-";

/// What reports say in place of the name of a file that went there.
constexpr const char* standardOutputText = "standard output";

inline bool IsStandardStream(const std::filesystem::path& file)
{
    return file == standardStream;
}

/// As sentences and reports have it: the name as it was given, or "standard input".
std::string InputText(const std::filesystem::path& file);

/// Everything up to its end. Nobody has to wait for the end of what is being typed.
/// @param most             bytes; more are an error
/// @throws base::IoError, base::FormatError  it cannot be read, or is larger
/// @throws base::Cancelled  while it was waited for
std::string ReadStandardInput(std::size_t most);

/// An option, and the file that it was given.
using NamedOption = std::pair<const char*, std::string>;

/// @throws UsageError  two of them ask for the same stream
void CheckOneAtMost(const std::vector<NamedOption>& options);

/// The file that an option names, or for "-" one in a temporary folder that send() copies to standard output.
/// Reports for people then go to the other stream.
class OutputFile {
public:
    /// @param option   for sentences
    /// @param made     the temporary file's name, which tells its kind
    /// @param json     whether standard output is asked for by --json as well
    /// @throws UsageError  it is
    OutputFile(const char* option, const std::string& given, const char* made, bool json);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    bool isStandardOutput() const { return _isStream; }
    const std::filesystem::path& path() const { return _path; }
    /// Does nothing for a file that has its place.
    /// @throws base::IoError, std::runtime_error  it cannot be read or written
    void send() const;

private:
    struct Folder;
    std::unique_ptr<Folder> _folder;
    std::filesystem::path _path;
    bool _isStream;
};

} // namespace cli
