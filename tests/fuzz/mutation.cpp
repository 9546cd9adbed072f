// Bytes that something hit.
// SPDX-License-Identifier: MIT

#include "tests/fuzz/mutation.h"

#include <algorithm>
#include <fstream>

namespace {

std::size_t Below(std::size_t count, std::mt19937& random)
{
    return count == 0 ? 0 : random() % count;
}

std::string Unquoted(const std::string& line)
{
    std::string word;
    for (std::size_t i = 1; i + 1 < line.size(); ++i) {
        if (line[i] != '\\') {
            word += line[i];
        } else if (line[++i] == 'x') {
            word += static_cast<char>(std::stoi(line.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            word += line[i];
        }
    }
    return word;
}

const std::string& OneOf(const std::vector<std::string>& texts, std::mt19937& random)
{
    return texts[Below(texts.size(), random)];
}

std::string Piece(const std::string& text, std::mt19937& random)
{
    constexpr std::size_t longest = 60;
    return text.substr(Below(text.size(), random), 1 + random() % longest);
}

void Hit(std::string& text, const std::vector<std::string>& seeds, const std::vector<std::string>& words,
         std::mt19937& random)
{
    const std::size_t place = Below(text.size(), random);
    switch (random() % 7) {
    case 0:
        if (!text.empty())
            text[place] = static_cast<char>(random());
        break;
    case 1:
        text.erase(place, 1 + random() % 20);
        break;
    case 2:
        text.insert(place, Piece(text, random));
        break;
    case 3:
        text.insert(place, Piece(OneOf(seeds, random), random));
        break;
    case 4:
        text.insert(place, OneOf(words, random));
        break;
    case 5:
        text.replace(place, 1, std::to_string(static_cast<std::int32_t>(random())));
        break;
    default:
        if (random() % 8 == 0)
            text.resize(place);
    }
}

} // namespace

std::vector<std::string> ReadWords(const std::filesystem::path& dictionary)
{
    std::vector<std::string> words;
    std::ifstream lines(dictionary);
    for (std::string line; std::getline(lines, line);)
        if (line.size() > 2 && line.front() == '"')
            words.push_back(Unquoted(line));
    return words;
}

std::string Mutation(const std::vector<std::string>& seeds, const std::vector<std::string>& words,
                     std::mt19937& random)
{
    std::string text = OneOf(seeds, random);
    for (std::size_t hits = 1 + random() % 4; hits > 0; --hits)
        Hit(text, seeds, words, random);
    return text;
}
