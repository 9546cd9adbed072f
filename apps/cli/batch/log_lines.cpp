// Logs of any size, line by line.
// SPDX-License-Identifier: MIT

#include "batch/log_lines.h"

#include "base/errors.h"
#include "base/limits.h"
#include "standard_streams.h"

#include <algorithm>
#include <vector>

namespace cli {

LogLines::LogLines(const std::string& name)
    : _name(name), _file(name == standardStream ? "/dev/stdin" : name, "cannot open")
{
}

std::optional<std::string> LogLines::next()
{
    std::size_t searched = _at;
    std::size_t end;
    while ((end = _bytes.find('\n', searched)) == _bytes.npos && !_isAtEnd) {
        _bytes.erase(0, _at);
        _at = 0;
        searched = _bytes.size();
        if (searched > base::longestTable)
            throw base::FormatError("{}: line {} is longer than {} bytes", _name, _number + 1,
                                    base::longestTable);
        std::vector<char> piece(std::size_t{1} << 18);
        const std::size_t count = _file.read(piece.data(), piece.size());
        _bytes.append(piece.data(), count);
        _isAtEnd = count == 0;
    }
    if (end == _bytes.npos && _at == _bytes.size())
        return std::nullopt;
    end = std::min(end, _bytes.size());
    std::string line = _bytes.substr(_at, end - _at);
    _at = std::min(end + 1, _bytes.size());
    ++_number;
    return line;
}

} // namespace cli
