// What is to be put in place when a program was stopped, in a file that says so.
// SPDX-License-Identifier: MIT

#include "file_set_journal.h"

#include "base/atomic_file.h"
#include "base/errors.h"
#include "base/file_set.h"
#include "base/input_file.h"
#include "base/limits.h"
#include "base/reason.h"

#include <algorithm>

namespace base {

namespace fs = std::filesystem;

namespace {

const std::string heading = "gantrel file set 2";

/// A word that says what follows, and that.
using Item = std::vector<std::string>;

/// Names may hold anything but NUL, so that is what divides them.
std::string ToText(const std::vector<Item>& items)
{
    std::string text = heading + '\0';
    for (const Item& item : items)
        for (const std::string& word : item)
            text += word + '\0';
    return text + "end" + '\0';
}

/// How many words an item has; 0 for those that are none.
std::size_t Length(const std::string& what)
{
    if (what == "member")
        return 4;
    if (what == "put")
        return 5;
    if (what == "remove")
        return 3;
    return what == "set" || what == "draft" || what == "folder" ? 2 : 0;
}

std::vector<std::string> Words(const std::string& text)
{
    std::vector<std::string> words;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\0', at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return words;
}

/// Empty for what is not whole.
std::vector<Item> Items(const std::string& text)
{
    const std::vector<std::string> words = Words(text);
    if (words.size() < 2 || words.front() != heading || words.back() != "end")
        return {};
    std::vector<Item> items;
    const auto end = words.end() - 1;
    for (auto word = words.begin() + 1; word != end;) {
        const auto length = static_cast<std::ptrdiff_t>(Length(*word));
        if (length == 0 || length > end - word)
            return {};
        items.emplace_back(word, word + length);
        word += length;
    }
    return items;
}

/// A journal that somebody else wrote is not to reach other folders.
bool IsName(const std::string& name)
{
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

bool IsFolder(const std::string& below)
{
    const fs::path path(below);
    return below == "." || (!path.empty() && std::all_of(path.begin(), path.end(), [](const fs::path& step) {
               return IsName(step.string());
           }));
}

bool Add(Journal& journal, const Item& item)
{
    const std::string& what = item.front();
    if (what == "folder") {
        journal.folders.push_back({item[1], {}, {}});
        return IsFolder(item[1]);
    }
    if (journal.folders.empty() || !IsName(item[1]))
        return false;
    FolderPlan& plan = journal.folders.back();
    if (what == "remove") {
        plan.removals.push_back({item[1], item[2]});
        return true;
    }
    if (what != "put" || !IsUnfinishedName(item[1]) || !IsName(item[2]))
        return false;
    plan.renames.push_back({item[1], item[2], item[3], item[4]});
    return true;
}

std::vector<Item> ItemsIn(const fs::path& folder)
{
    if (!HasJournalFile(folder))
        return {};
    InputFile file(folder / fileSetJournal);
    if (file.size() > longestJournal)
        return {};
    std::string text(file.size(), '\0');
    std::size_t length = 0;
    while (const std::size_t count = file.read(text.data() + length, text.size() - length))
        length += count;
    text.resize(length);
    return Items(text);
}

} // namespace

std::string ToText(const Journal& journal)
{
    std::vector<Item> items;
    if (!journal.id.empty())
        items.push_back({journal.isDecided ? "set" : "draft", journal.id});
    for (const FolderPlan& plan : journal.folders) {
        if (!journal.id.empty())
            items.push_back({"folder", plan.folder});
        if (!journal.isDecided)
            continue;
        for (const Renaming& renaming : plan.renames)
            items.push_back({"put", renaming.from, renaming.to, renaming.fromIdentity, renaming.toIdentity});
        for (const Removal& removal : plan.removals)
            items.push_back({"remove", removal.name, removal.identity});
    }
    return ToText(items);
}

std::string ToText(const JournalPointer& pointer)
{
    return ToText({{"member", pointer.id, pointer.folder, pointer.home}});
}

std::optional<Journal> JournalIn(const fs::path& folder)
{
    const std::vector<Item> items = ItemsIn(folder);
    if (items.empty())
        return std::nullopt;
    Journal journal;
    auto item = items.begin();
    journal.isDecided = item->front() != "draft";
    if (item->front() == "set" || !journal.isDecided)
        journal.id = (*item++)[1];
    else
        journal.folders.emplace_back();
    const bool hasSeveral = !journal.id.empty();
    for (; item != items.end(); ++item)
        if ((item->front() == "folder" ? !hasSeveral : !journal.isDecided) || !Add(journal, *item))
            return std::nullopt;
    return journal.folders.empty() ? std::nullopt : std::optional<Journal>(std::move(journal));
}

std::optional<JournalPointer> PointerIn(const fs::path& folder)
{
    const std::vector<Item> items = ItemsIn(folder);
    if (items.size() != 1 || items.front().front() != "member")
        return std::nullopt;
    JournalPointer pointer{items.front()[1], items.front()[2], items.front()[3]};
    const bool isWhole = !pointer.id.empty() && IsFolder(pointer.folder) && IsFolder(pointer.home);
    return isWhole ? std::optional<JournalPointer>(std::move(pointer)) : std::nullopt;
}

bool HasJournalFile(const fs::path& folder)
{
    std::error_code error;
    const fs::file_status found = fs::symlink_status(folder / fileSetJournal, error);
    // Whoever took it for none would take back what may be in place by half.
    if (found.type() == fs::file_type::none)
        throw IoError("cannot read {}: {}", (folder / fileSetJournal).string(), ReasonOf(error));
    return fs::is_regular_file(found);
}

fs::path RootAbove(const fs::path& folder, const std::string& below)
{
    const fs::path steps(below);
    fs::path root = folder;
    for (auto step = steps.end(); below != "." && step != steps.begin();) {
        if (root.filename() != *--step)
            return {};
        root = root.parent_path();
    }
    return root;
}

} // namespace base
