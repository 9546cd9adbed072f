// Documents of the content format.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dson/gzip.h"
#include "dson/reader.h"
#include "fuzz/target.h"
#include "tests/host/foreign_fixture.h"

namespace {

/// The text of a file as our own writers make it.
std::string Written(const std::filesystem::path& file)
{
    return dson::IsGzip(ReadBytes(file)) ? dson::Decompress(ReadBytes(file), "seed", 1 << 20)
                                         : ReadBytes(file);
}

std::vector<std::string> Seeds()
{
    const std::filesystem::path folder = fuzz::ScratchFolder() / "seeds";
    dson::WriteFigure(mini::Figure(), folder);
    return {
        Written(folder / (mini::figurePath + 1)),
        Written(mini::WriteMorph(mini::Morph("Up", 3, {0.0f, 1.0f, 0.0f}), folder)),
        Written(mini::WriteCharacter(folder, {})),
        doll::File(doll::Figure(), "figure"),
        doll::ModifierFile(
            doll::Morph("Up", 3, 1.5, doll::Driven("hand:#hand?scale/x", "Doll:#Up?value", "0.5"))),
        doll::Scene(doll::Instance(), R"(, "modifiers": [{"id": "Up", "url": "/x.dsf#Up", "parent": "#Doll",
                "channel": {"id": "value", "type": "float", "current_value": 0,5}}],
                "animations": [{"url": "#Doll:?rotation/x/value", "keys": [[0, NaN], [1, 1e400]]}])")};
}

void Feed(std::string_view bytes)
{
    const std::filesystem::path file = fuzz::WriteScratch("input.dsf", bytes);
    try {
        dson::ReadOptions options;
        options.deltas = false;
        for (const dson::Modifier& modifier : dson::ReadDocument(file, options).modifiers)
            if (modifier.morph)
                dson::ReadDeltas(file, modifier.id);
        dson::ReadDocument(file);
    } catch (const base::Error&) {
    }
}

const fuzz::Registration registration({"dson", Seeds, Feed});

} // namespace
