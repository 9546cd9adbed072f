// Formulas that wait until everything that they name is there.
// SPDX-License-Identifier: MIT

#include "pending_formulas.h"

#include "library/asset_origin.h"

#include <algorithm>
#include <functional>

namespace openhost {

namespace {

void Mix(std::size_t& hash, std::size_t other)
{
    hash ^= other + 0x9e3779b97f4a7c15u + (hash << 6) + (hash >> 2);
}

std::size_t HashOf(const dson::Formula& formula)
{
    std::size_t hash = std::hash<std::string>()(formula.output);
    for (const dson::Operation& operation : formula.operations) {
        Mix(hash, std::hash<std::string>()(operation.url));
        Mix(hash, static_cast<std::size_t>(operation.kind));
        Mix(hash, std::hash<double>()(operation.value));
    }
    return hash;
}

bool AreEqual(const dson::Formula& a, const dson::Formula& b)
{
    return a.output == b.output && a.stage == b.stage &&
           std::equal(a.operations.begin(), a.operations.end(), b.operations.begin(), b.operations.end(),
                      [](const dson::Operation& x, const dson::Operation& y) {
                          return x.kind == y.kind && x.url == y.url && x.value == y.value && x.knot == y.knot;
                      });
}

/// The first address that leads nowhere.
std::string MissingIn(const dson::Formula& formula, const PropertyResolver& resolve)
{
    if (resolve(formula.output))
        for (const dson::Operation& operation : formula.operations)
            if (operation.kind == dson::Operation::Kind::PushUrl && !resolve(operation.url))
                return operation.url;
    return formula.output;
}

} // namespace

bool PendingFormulas::hasEqual(std::size_t hash, const dson::Formula& formula) const
{
    const auto alike = _byHash.equal_range(hash);
    return std::any_of(alike.first, alike.second,
                       [&formula](const auto& entry) { return AreEqual(*entry.second, formula); });
}

void PendingFormulas::add(const dson::Formula& formula, const std::shared_ptr<const dson::Document>& owner)
{
    const std::size_t hash = HashOf(formula);
    if (hasEqual(hash, formula))
        _duplicateOutputs.insert(formula.output);
    else
        _byHash.emplace(hash, &formula);
    _formulas.push_back({&formula, owner});
}

void PendingFormulas::addOnce(const dson::Formula& formula,
                              const std::shared_ptr<const dson::Document>& owner)
{
    if (!hasEqual(HashOf(formula), formula))
        add(formula, owner);
}

std::set<std::string> PendingFormulas::duplicateOutputs() const
{
    return _duplicateOutputs;
}

PendingFormulas::LeftOut
PendingFormulas::connect(const PropertyResolver& resolve,
                         const std::function<void(const dson::Formula&)>& tellHomeless)
{
    LeftOut leftOut;
    const dson::Document* owner = nullptr;
    bool isFromDataFile = false;
    for (const Pending& pending : _formulas) {
        // Those of a file wait one behind the other.
        if (pending.owner.get() != owner) {
            owner = pending.owner.get();
            isFromDataFile = IsDataFile(owner->file.native());
        }
        const LinkResult result = MakeLink(*pending.formula, resolve, isFromDataFile);
        if (result == LinkResult::MissingProperty)
            leftOut.missing.push_back(MissingIn(*pending.formula, resolve));
        if (result == LinkResult::MissingProperty && !resolve(pending.formula->output))
            tellHomeless(*pending.formula);
        if (result == LinkResult::NotUnderstood)
            leftOut.notUnderstood.push_back(pending.formula->output);
    }
    _formulas.clear();
    _byHash.clear();
    _duplicateOutputs.clear();
    return leftOut;
}

} // namespace openhost
