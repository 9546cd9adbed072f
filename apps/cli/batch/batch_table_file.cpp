// The file that a batch's table is in.
// SPDX-License-Identifier: MIT

#include "batch/batch_table_file.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "base/input_file.h"
#include "base/limits.h"
#include "base/reason.h"

#include <cerrno>
#include <functional>

#include <unistd.h>

namespace cli {

namespace {

std::size_t ReadInput(char* bytes, std::size_t room)
{
    while (true) {
        base::ThrowIfCancelled();
        const ssize_t count = read(STDIN_FILENO, bytes, room);
        if (count >= 0)
            return static_cast<std::size_t>(count);
        if (errno != EINTR)
            throw base::IoError("cannot read standard input: {}", base::ReasonOf(errno));
    }
}

std::string ReadAll(const std::string& name, const std::function<std::size_t(char*, std::size_t)>& readSome)
{
    std::string text;
    char piece[1 << 16];
    while (const std::size_t count = readSome(piece, sizeof piece)) {
        text.append(piece, count);
        if (text.size() > base::longestTable)
            throw base::FormatError("{}: is larger than {} bytes", name, base::longestTable);
    }
    return text;
}

} // namespace

std::string ReadTableFile(const std::string& name)
{
    if (name == standardInput)
        return ReadAll("standard input", ReadInput);
    base::InputFile file(name);
    return ReadAll(name, [&file](char* bytes, std::size_t room) { return file.read(bytes, room); });
}

} // namespace cli
