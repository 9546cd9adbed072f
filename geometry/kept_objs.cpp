// OBJ files that are read again shortly after they were written.
// SPDX-License-Identifier: MIT

#include "geometry/kept_objs.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "base/input_file.h"
#include "fingerprint.h"
#include "obj_recall.h"
#include "obj_writer.h"

#include <tbb/parallel_invoke.h>

#include <algorithm>
#include <list>
#include <optional>
#include <vector>

namespace geometry {

namespace {

namespace fs = std::filesystem;

struct Kept {
    fs::path file;
    std::uintmax_t size = 0;
    Fingerprint content;
    WrittenObj written;
};

/// Nothing for what cannot be read to its end: whoever parses it tells why.
std::optional<Fingerprint> FingerprintOf(const fs::path& file)
{
    std::vector<char> bytes(std::size_t{1} << 20);
    try {
        base::InputFile input(file);
        Fingerprinter content;
        while (const std::size_t count = input.read(bytes.data(), bytes.size()))
            content.add(bytes.data(), count);
        return content.result();
    } catch (const base::IoError&) {
        return std::nullopt;
    }
}

} // namespace

struct KeptObjs::Impl {
    std::list<Kept> kept; ///< the newest comes first
    int recalled = 0;

    void forget(const fs::path& file)
    {
        kept.remove_if([&](const Kept& one) { return one.file == file; });
    }

    /// The file of that name as it was written; null where it is clearly another one by now.
    const Kept* find(const fs::path& file) const
    {
        const auto found =
            std::find_if(kept.begin(), kept.end(), [&](const Kept& one) { return one.file == file; });
        std::error_code error;
        // The size alone tells most changes; and a pipe can be read but once.
        const bool isLikely = found != kept.end() && fs::is_regular_file(file, error) &&
                              fs::file_size(file, error) == found->size;
        return isLikely ? &*found : nullptr;
    }
};

KeptObjs::KeptObjs() : _impl(std::make_unique<Impl>()) {}
KeptObjs::~KeptObjs() = default;

void KeptObjs::write(const fs::path& file, base::Span<const ObjPart> parts,
                     const std::shared_ptr<const Topology>& topology, const ObjWriteOptions& options)
{
    constexpr std::size_t most = 2; // a conversion goes back no further
    _impl->forget(file);
    if (parts.size() != 1) {
        WriteObj(file, parts, options);
        return;
    }
    const ObjPart& part = parts[0];
    Kept kept;
    kept.file = file;
    Fingerprinter content;
    WriteObjSeen(file, parts, options, [&](std::string_view text) {
        content.add(text.data(), text.size());
        kept.size += text.size();
    });
    kept.content = content.result();
    kept.written.mesh = {topology, {part.mesh.positions.begin(), part.mesh.positions.end()}};
    kept.written.hasLines = options.writeLines && !part.lines.empty();
    kept.written.hasTexCoords = options.writeTexCoords && part.texCoords;
    kept.written.options = options;
    _impl->kept.push_front(std::move(kept));
    if (_impl->kept.size() > most)
        _impl->kept.pop_back();
}

ObjContent KeptObjs::read(const fs::path& file, const ObjReadOptions& options) const
{
    if (const Kept* const kept = _impl->find(file)) {
        std::optional<Fingerprint> content;
        std::optional<ObjContent> recalled;
        // As a rule the file is still the same, and what was recalled meanwhile is not in vain.
        tbb::parallel_invoke([&] { content = FingerprintOf(file); },
                             [&] { recalled = Recall(kept->written, options); });
        if (recalled && content && *content == kept->content) {
            ++_impl->recalled;
            return std::move(*recalled);
        }
    }
    return ReadObj(file, options);
}

int KeptObjs::recalledCount() const
{
    return _impl->recalled;
}

} // namespace geometry
