// Whether a table is known to be right as a whole.
// SPDX-License-Identifier: MIT

#include "batch/checked_table.h"

#include "base/atomic_file.h"
#include "base/errors.h"
#include "base/input_file.h"

#include <QCryptographicHash>

namespace cli {

namespace fs = std::filesystem;

namespace {

void Add(QCryptographicHash& hash, const std::string& text)
{
    hash.addData(text.c_str(), static_cast<int>(text.size() + 1)); // the zero tells where it ends
}

std::string SumOf(const std::string& text, const JobRow& defaults)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    Add(hash, GANTREL_VERSION);
    Add(hash, text);
    for (const JobRow::Cell& cell : defaults.cells) {
        Add(hash, cell.first);
        for (const std::string& value : cell.second)
            Add(hash, value);
        Add(hash, {});
    }
    return hash.result().toHex().toStdString() + '\n';
}

} // namespace

fs::path CheckedTable::PlaceFor(const fs::path& table)
{
    return table.native() + ".gantrel-batch-checked";
}

CheckedTable::CheckedTable(const fs::path& table, const std::string& text, const JobRow& defaults)
    : _file(PlaceFor(table)), _sum(SumOf(text, defaults))
{
}

bool CheckedTable::isKnown() const
{
    try {
        std::string known(_sum.size() + 1, '\0');
        base::InputFile file(_file);
        known.resize(file.read(known.data(), known.size()));
        return known == _sum;
    } catch (const base::Error&) {
        return false;
    }
}

void CheckedTable::remember() const
{
    try {
        if (!isKnown())
            base::WriteFileAtomically(_file, _sum);
    } catch (const base::Error&) {
        return;
    }
}

} // namespace cli
