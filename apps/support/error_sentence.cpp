// Errors as one sentence.
// SPDX-License-Identifier: MIT

#include "error_sentence.h"

#include "printable.h"

#include <cctype>

namespace app {

namespace {

bool IsSpace(char c)
{
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

/// The sentences are English wherever the program runs; in Turkish, i has another upper case.
char UpperCase(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string OnOneLine(const std::string& text)
{
    std::string line;
    for (const char c : text) {
        if (!IsSpace(c))
            line += c;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    }
    while (!line.empty() && line.back() == ' ')
        line.pop_back();
    return line;
}

/// Paths hold a slash or a dot; a name that is complained of stands before a colon. A path may hold spaces,
/// so that everything before a colon counts.
bool BeginsWithName(const std::string& line)
{
    const std::string word = line.substr(0, line.find(' '));
    if (word.find_first_of("/\\.:_") != std::string::npos)
        return true;
    const std::string upToColon = line.substr(0, line.find(": "));
    return upToColon.size() < line.size() && upToColon.find_first_of("/\\") != std::string::npos &&
           upToColon.find_first_of("/\\") < upToColon.find(' ');
}

} // namespace

std::string ErrorSentence(const std::string& text)
{
    std::string line = Printable(OnOneLine(text));
    if (line.empty())
        line = "unknown error";
    if (!BeginsWithName(line))
        line.front() = UpperCase(line.front());
    const char last = line.back();
    if (last != '.' && last != '!' && last != '?')
        line += '.';
    return line;
}

} // namespace app
