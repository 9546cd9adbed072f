// What parts of a body are drawn in.
// SPDX-License-Identifier: MIT

#include "openhost/scene_picture.h"

#include "base/ascii.h"

#include <map>
#include <string>

namespace openhost {

namespace {

using Color = std::array<float, 3>;

/// Words in lower case, where names part them by spaces, marks, digits or capitals: "EyeLashes_2".
std::vector<std::string> WordsOf(const std::string& name)
{
    std::vector<std::string> words(1);
    bool wasSmall = false;
    for (const char c : name) {
        const char small = base::ToLowerAscii(c);
        const bool isLetter = small >= 'a' && small <= 'z', isCapital = isLetter && small != c;
        if ((!isLetter || (isCapital && wasSmall)) && !words.back().empty())
            words.emplace_back();
        if (isLetter)
            words.back() += small;
        wasSmall = isLetter && !isCapital;
    }
    return words;
}

const std::map<std::string, Color>& ColorsByWord()
{
    constexpr Color white{0.80f, 0.78f, 0.75f}, brown{0.17f, 0.085f, 0.035f}, black{0.006f, 0.005f, 0.005f},
        ivory{0.82f, 0.78f, 0.68f}, dark{0.03f, 0.02f, 0.016f}, pink{0.82f, 0.60f, 0.54f};
    static const std::map<std::string, Color> colors{
        {"sclera", white},  {"scleras", white}, {"iris", brown},       {"irises", brown},
        {"pupil", black},   {"pupils", black},  {"teeth", ivory},      {"lash", dark},
        {"lashes", dark},   {"eyelash", dark},  {"eyelashes", dark},   {"brows", dark},
        {"eyebrows", dark}, {"nails", pink},    {"fingernails", pink}, {"toenails", pink}};
    return colors;
}

} // namespace

std::vector<std::array<float, 3>> SurfaceColors(const geometry::Topology& topology)
{
    const Color skin = geometry::PictureItem().color;
    std::vector<Color> colors(topology.surfaceNames.size(), skin);
    bool isAnyOther = false;
    for (std::size_t s = 0; s < colors.size(); ++s)
        for (const std::string& word : WordsOf(topology.surfaceNames[s]))
            if (const auto found = ColorsByWord().find(word); found != ColorsByWord().end()) {
                colors[s] = found->second;
                isAnyOther = true;
            }
    if (!isAnyOther)
        colors.clear();
    return colors;
}

} // namespace openhost
