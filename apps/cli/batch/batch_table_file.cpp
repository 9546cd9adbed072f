// The file that a batch's table is in.
// SPDX-License-Identifier: MIT

#include "batch/batch_table_file.h"

#include "base/errors.h"
#include "base/input_file.h"
#include "base/limits.h"
#include "standard_streams.h"

namespace cli {

std::string ReadTableFile(const std::string& name)
{
    if (IsStandardStream(name))
        return ReadStandardInput(base::longestTable);
    base::InputFile file(name);
    std::string text;
    char piece[1 << 16];
    while (const std::size_t count = file.read(piece, sizeof piece)) {
        text.append(piece, count);
        if (text.size() > base::longestTable)
            throw base::FormatError("{}: is larger than {} bytes", name, base::longestTable);
    }
    return text;
}

} // namespace cli
