// JSON as it ought not to be written, made strict.
// SPDX-License-Identifier: MIT

#include "lenient_json.h"

#include "base/cancellation.h"
#include "dson/limits.h"
#include "json_token.h"
#include "lenient_string.h"
#include "oddities.h"
#include "repeated_names.h"

#include <algorithm>

namespace dson {

namespace {

/// Where the text makes no sense.
struct Senseless {
    std::size_t at;
};

bool IsNameStart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$';
}

bool IsWholeNumber(std::string_view word)
{
    if (!word.empty() && (word.front() == '-' || word.front() == '+'))
        word.remove_prefix(1);
    return !word.empty() && word.find_first_not_of("0123456789") == word.npos;
}

/// Digits and perhaps an exponent.
bool IsFraction(std::string_view word)
{
    return !word.empty() && IsWholeNumber(word.substr(0, 1)) && word.find_first_of(".xX") == word.npos &&
           ReadToken(word).kind != JsonToken::Kind::Unknown;
}

class Mender {
public:
    /// @param names    hears of all names; null for nobody
    /// @param deepest  levels that are left
    Mender(std::string_view text, RepeatedNames* names, std::size_t deepest)
        : _text(text), _names(names), _deepest(deepest)
    {
        _result.reserve(text.size());
    }

    void mend()
    {
        takeGap();
        if (peek() != '{' && peek() != '[')
            throw Senseless{_at};
        do {
            takeNext();
            takeGap();
        } while (!_open.empty());
        noteBehindEnd();
    }
    std::string& result() { return _result; }
    const Oddities& oddities() const { return _oddities; }
    bool hasLeftOutBranch() const { return _hasLeftOutBranch; }

private:
    /// An array or object that is not closed yet.
    struct Open {
        char bracket;
        bool hasItems = false;
        bool isAfterComma = false;
        bool wantsValue = false; ///< a name and its colon have been read
        std::size_t comma = 0;   ///< of the last one
    };

    // 0 stands for the end; a zero byte within the text makes no sense either way.
    char peek(std::size_t ahead = 0) const { return _at + ahead < _text.size() ? _text[_at + ahead] : '\0'; }
    void note(Oddity kind, std::size_t at) { _oddities.add(kind, at); }

    void takeNext()
    {
        switch (peek()) {
        case '{':
        case '[':
            return open();
        case '}':
        case ']':
            return close();
        case ',':
            return takeComma();
        default:
            return wantsName() ? takeName() : takeValue();
        }
    }

    /// White space and comments.
    void takeGap()
    {
        for (;;) {
            _at = std::min(_text.find_first_not_of(" \t\r\n\f\v", _at), _text.size());
            if (peek() != '/' || (peek(1) != '/' && peek(1) != '*'))
                return;
            note(Oddity::Comment, _at);
            if (peek(1) == '/') {
                _at = std::min(_text.find('\n', _at), _text.size());
                continue;
            }
            const std::size_t end = _text.find("*/", _at + 2);
            if (end == std::string_view::npos)
                throw Senseless{_text.size()};
            _at = end + 2;
        }
    }

    void beginItem()
    {
        base::ThrowIfCancelled();
        if (_open.empty())
            return;
        Open& list = _open.back();
        if (list.wantsValue) {
            list.wantsValue = false;
            return;
        }
        if (list.hasItems) {
            if (!list.isAfterComma)
                note(Oddity::MissingComma, _at);
            _result += ',';
        }
        list.hasItems = true;
        list.isAfterComma = false;
    }

    bool wantsName() const
    {
        return !_open.empty() && _open.back().bracket == '{' && !_open.back().wantsValue;
    }

    void open()
    {
        if (wantsName())
            throw Senseless{_at};
        beginItem();
        if (_open.size() == _deepest)
            return leaveOutBranch();
        if (_names && peek() == '{')
            _names->open();
        _open.push_back({peek()});
        _result += peek();
        ++_at;
    }

    /// A byte for each level: a file may be nothing but brackets.
    void leaveOutBranch()
    {
        note(Oddity::TooDeep, _at);
        _hasLeftOutBranch = true;
        _result += "null";
        std::string open;
        do {
            const char c = peek();
            if (_at >= _text.size())
                throw Senseless{_text.size()};
            if (c == '"' || c == '\'') {
                leaveOutString();
            } else {
                if (c == '{' || c == '[')
                    open += c;
                else if ((c == '}' || c == ']') && open.back() != (c == '}' ? '{' : '['))
                    throw Senseless{_at};
                else if (c == '}' || c == ']')
                    open.pop_back();
                ++_at;
            }
            takeGap();
        } while (!open.empty());
    }

    void leaveOutString()
    {
        std::string unread;
        Oddities unheard;
        if (!MendString(_text, _at, unread, unheard))
            throw Senseless{_text.size()};
    }

    void close()
    {
        const Open list = _open.back();
        if (peek() != (list.bracket == '{' ? '}' : ']'))
            throw Senseless{_at};
        giveMissingValue();
        if (list.isAfterComma)
            note(Oddity::StrayComma, list.comma);
        if (_names && list.bracket == '{')
            _names->close();
        _result += peek();
        ++_at;
        _open.pop_back();
    }

    void giveMissingValue()
    {
        if (!_open.back().wantsValue)
            return;
        note(Oddity::NoValue, _at);
        _result += "null";
        _open.back().wantsValue = false;
    }

    void takeComma()
    {
        giveMissingValue();
        Open& list = _open.back();
        if (list.isAfterComma || !list.hasItems)
            note(Oddity::StrayComma, _at);
        else
            list.comma = _at;
        list.isAfterComma = list.hasItems;
        ++_at;
    }

    bool isAtString() const { return peek() == '"' || peek() == '\''; }

    void takeValue()
    {
        if (!isAtString())
            return takeWord();
        beginItem();
        takeString();
    }

    void takeName()
    {
        if (!isAtString() && !IsNameStart(peek()))
            throw Senseless{_at};
        beginItem();
        const std::size_t at = _at, quote = _result.size();
        if (isAtString())
            takeString();
        else
            takeBareName();
        if (_names)
            _names->add(std::string_view(_result).substr(quote + 1, _result.size() - quote - 2), at);
        takeColon();
    }

    void takeString()
    {
        if (peek() == '\'')
            note(Oddity::SingleQuotes, _at);
        if (!MendString(_text, _at, _result, _oddities))
            throw Senseless{_text.size()};
    }

    std::string_view wordAt(std::size_t at) const
    {
        const std::string_view rest = _text.substr(at);
        const auto end = std::find_if_not(rest.begin(), rest.end(), IsTokenCharacter);
        return rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
    }

    void takeBareName()
    {
        note(Oddity::BareName, _at);
        _result += '"';
        while (IsTokenCharacter(peek()) || peek() == '$')
            _result += _text[_at++];
        _result += '"';
    }

    void takeWord()
    {
        const std::string_view word = wordAt(_at);
        if (const std::string_view fraction = fractionBehind(word); !fraction.empty()) {
            note(Oddity::DecimalComma, _at);
            takeToken(ReadToken(std::string(word).append(1, '.').append(fraction)));
            _at += word.size() + 1 + fraction.size();
            return;
        }
        const JsonToken token = ReadToken(word);
        if (token.kind == JsonToken::Kind::Unknown)
            throw Senseless{_at + word.size() == _text.size() ? _text.size() : _at};
        if (token.kind == JsonToken::Kind::Renamed)
            note(Oddity::Notation, _at);
        takeToken(token);
        _at += word.size();
    }

    /// What follows a whole number and a comma that is its decimal point: in an object a name has to come
    /// behind any other comma.
    std::string_view fractionBehind(std::string_view word) const
    {
        const bool isMember = !_open.empty() && _open.back().wantsValue;
        if (!isMember || peek(word.size()) != ',' || !IsWholeNumber(word))
            return {};
        const std::size_t begin = _at + word.size() + 1;
        const std::string_view fraction = wordAt(begin);
        const std::size_t behind = _text.find_first_not_of(" \t\r\n", begin + fraction.size());
        const bool isName = behind != _text.npos && _text[behind] == ':';
        return IsFraction(fraction) && !isName ? fraction : std::string_view();
    }

    void takeToken(const JsonToken& token)
    {
        beginItem();
        if (token.kind == JsonToken::Kind::NotFinite)
            note(Oddity::NotFinite, _at);
        if (token.kind == JsonToken::Kind::Rounded)
            note(Oddity::Rounded, _at);
        _result += token.text;
    }

    void takeColon()
    {
        takeGap();
        if (peek() != ':')
            throw Senseless{_at};
        _result += ':';
        ++_at;
        _open.back().wantsValue = true;
    }

    void noteBehindEnd()
    {
        // 26 was an end-of-file mark once.
        const std::string_view rest = _text.substr(_at);
        if (rest.empty())
            return;
        const bool isPadding =
            rest.find_first_not_of(std::string_view("\0\x1A \t\r\n", 6)) == std::string_view::npos;
        note(isPadding ? Oddity::PaddingBehindEnd : Oddity::TextBehindEnd, _at);
    }

    std::string_view _text;
    RepeatedNames* _names;
    std::size_t _deepest;
    std::size_t _at = 0;
    std::string _result;
    std::vector<Open> _open;
    Oddities _oddities;
    bool _hasLeftOutBranch = false;
};

} // namespace

TextPlace PlaceOf(std::string_view text, std::size_t at)
{
    TextPlace place;
    for (const char c : text.substr(0, at)) {
        if (c == '\n') {
            ++place.line;
            place.column = 1;
        } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
            ++place.column;
        }
    }
    return place;
}

MendedJson Mend(std::string_view text, RepeatedNames* names)
{
    // Saving puts what was by itself into a list, which must not make it too deep again.
    constexpr std::size_t roomForSaving = 8;
    MendedJson mended;
    try {
        std::optional<Mender> mender(std::in_place, text, names, deepestNesting);
        mender->mend();
        if (mender->hasLeftOutBranch()) {
            mender.emplace(text, nullptr, deepestNesting - roomForSaving);
            mender->mend();
        }
        mended.text = std::move(mender->result());
        mended.oddities = mender->oddities().phrases(text);
    } catch (const Senseless& end) {
        mended.error = std::min(end.at, text.size());
    }
    return mended;
}

} // namespace dson
