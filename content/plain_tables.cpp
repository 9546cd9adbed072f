// Sparse tables: comma-separated rows that begin with a vertex index.
// SPDX-License-Identifier: MIT

#include "plain_formats.h"

#include "base/errors.h"
#include "dson/file_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace content {

namespace {

using base::FormatError;
using geometry::Vec3f;

/// Walks over the rows of a table; each has a vertex and `columnCount` numbers.
template <std::size_t columnCount, class Use>
void ForEachRow(const std::filesystem::path& file, std::size_t vertexCount, std::string_view header,
                const Use& use)
{
    const std::string text = dson::ReadBytes(file);
    std::vector<char> seen(vertexCount, 0);
    std::size_t line = 0;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        std::string_view row(text.data() + start, end - start);
        start = end + 1;
        ++line;
        if (!row.empty() && row.back() == '\r')
            row.remove_suffix(1);
        if (row.empty() || (line == 1 && row == header))
            continue;
        const char *at = row.data(), *const last = row.data() + row.size();
        std::uint64_t vertex = 0;
        std::array<float, columnCount> numbers{};
        auto [next, error] = std::from_chars(at, last, vertex);
        bool understood = error == std::errc();
        for (std::size_t i = 0; understood && i < columnCount; ++i) {
            understood = next != last && *next == ',';
            if (!understood)
                break;
            const auto result = std::from_chars(next + 1, last, numbers[i]);
            understood = result.ec == std::errc() && std::isfinite(numbers[i]);
            next = result.ptr;
        }
        if (!understood || next != last)
            throw base::FormatError("{}:{}: expected {}", file.string(), line, header);
        if (vertex >= vertexCount)
            throw base::FormatError("{}:{}: vertex {} is out of range, the mesh has {}", file.string(), line,
                                    vertex, vertexCount);
        if (seen[vertex])
            throw base::FormatError("{}:{}: vertex {} is listed twice", file.string(), line, vertex);
        seen[vertex] = 1;
        use(static_cast<std::size_t>(vertex), numbers, line);
    }
}

} // namespace

std::vector<Vec3f> ReadDeltaTable(const std::filesystem::path& file, std::size_t vertexCount)
{
    std::vector<Vec3f> deltas(vertexCount);
    ForEachRow<3>(file, vertexCount, "vertex,dx,dy,dz",
                  [&](std::size_t vertex, const std::array<float, 3>& d, std::size_t) {
                      deltas[vertex] = {d[0], d[1], d[2]};
                  });
    return deltas;
}

std::vector<float> ReadWeightTable(const std::filesystem::path& file, std::size_t vertexCount)
{
    std::vector<float> weights(vertexCount, 0.0f);
    ForEachRow<1>(file, vertexCount, "vertex,weight",
                  [&](std::size_t vertex, const std::array<float, 1>& weight, std::size_t line) {
                      if (weight[0] < 0.0f || weight[0] > 1.0f)
                          throw base::FormatError("{}:{}: weight is not within 0 and 1", file.string(), line);
                      weights[vertex] = weight[0];
                  });
    return weights;
}

} // namespace content
