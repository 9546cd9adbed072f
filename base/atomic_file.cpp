// Files that appear whole or not at all.
// SPDX-License-Identifier: MIT

#include "base/atomic_file.h"

#include "base/errors.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <random>

namespace base {

namespace {

/// The length up to which nothing is cut in the middle of a character.
std::size_t WholeCharacters(const std::filesystem::path::string_type& utf8, std::size_t length)
{
    while (length > 0 && (utf8[length] & 0xC0) == 0x80)
        --length;
    return length;
}

/// Unlike any other writer's, in this process or another one.
std::filesystem::path UnfinishedName(const std::filesystem::path& target)
{
    static const std::uint64_t process =
        (std::uint64_t{std::random_device()()} << 32) | std::random_device()();
    static std::atomic<std::uint64_t> counter{0};
    const std::string mark = fmt::format(".{:x}-{}.part", process, ++counter);
    constexpr std::size_t longest = 255; // of the names of the usual file systems
    std::filesystem::path::string_type name = target.filename().native();
    // What may have its own name is not to fail for that of the unfinished file.
    if (name.size() <= longest && name.size() > longest - mark.size())
        name.resize(WholeCharacters(name, longest - mark.size()));
    std::filesystem::path unfinished = target.parent_path() / name;
    unfinished += mark;
    return unfinished;
}

} // namespace

AtomicFile::AtomicFile(std::filesystem::path target)
    : _target(std::move(target)), _unfinished(UnfinishedName(_target))
{
    // Told now rather than at the end, when other files may have been put in place already.
    std::error_code ignored;
    if (std::filesystem::is_directory(_target, ignored))
        fail(EISDIR);
    _stream = std::fopen(_unfinished.string().c_str(), "wbx");
    if (!_stream)
        fail(errno);
}

AtomicFile::~AtomicFile()
{
    if (!_stream)
        return;
    std::fclose(_stream);
    std::error_code ignored;
    std::filesystem::remove(_unfinished, ignored);
}

void AtomicFile::fail(int reason) const
{
    throw IoError("cannot write {}: {}", _target.string(), std::strerror(reason));
}

void AtomicFile::write(std::string_view bytes)
{
    // Flushed, so that a full disk shows here and commit() only has to rename.
    if (std::fwrite(bytes.data(), 1, bytes.size(), _stream) != bytes.size() || std::fflush(_stream) != 0)
        fail(errno);
}

void AtomicFile::commit()
{
    std::error_code error;
    std::filesystem::rename(_unfinished, _target, error);
    if (error)
        fail(error.value());
    std::fclose(_stream); // flushed before: nothing is left that could fail
    _stream = nullptr;
}

void WriteFileAtomically(const std::filesystem::path& file, std::string_view content)
{
    AtomicFile target(file);
    target.write(content);
    target.commit();
}

} // namespace base
