// How dials of converted morphs drive each other.
// SPDX-License-Identifier: MIT

#include "morph_links.h"

#include "base/errors.h"
#include "command.h"
#include "dials.h"
#include "dson/reader.h"
#include "dzmorph.h"
#include "dznumericcontroller.h"
#include "dznumericproperty.h"
#include "openhost/link_copies.h"

#include <algorithm>
#include <functional>

#include <fmt/format.h>

namespace cli {

namespace {

using Inputs = std::set<const DzNumericProperty*>;

std::vector<DzNumericController*> LinksOf(const DzNumericProperty& dial)
{
    std::vector<DzNumericController*> links;
    for (int i = 0; i < dial.getNumControllers(); ++i)
        if (auto* const link = qobject_cast<DzNumericController*>(dial.getController(i)))
            links.push_back(link);
    return links;
}

Inputs InputsOf(const DzNumericController& link)
{
    Inputs inputs;
    for (int i = 0; i < link.getNumInputs(); ++i)
        inputs.insert(link.getInput(i));
    return inputs;
}

/// One that several dials turn together, none of them alone.
bool IsCorrective(const DzNumericProperty& dial)
{
    const std::vector<DzNumericController*> links = LinksOf(dial);
    return std::any_of(links.begin(), links.end(), [](const DzNumericController* link) {
        return link->isMultiplying() || InputsOf(*link).size() > 1;
    });
}

/// Null when all are there.
const DzNumericProperty* FindMissing(const DzNumericController& link, const Inputs& present)
{
    for (const DzNumericProperty* const input : InputsOf(link))
        if (!present.count(input))
            return input;
    return nullptr;
}

Inputs DialsOf(const std::vector<PlannedMorph>& planned)
{
    Inputs dials;
    for (const PlannedMorph& morph : planned)
        dials.insert(morph.source.dial);
    return dials;
}

} // namespace

MorphLinks::MorphLinks(std::vector<PlannedMorph>& planned, const MorphConversionRequest& request,
                       std::vector<SkippedMorph>& skipped)
    : _request(request)
{
    if (!request.takesControllers && !request.takesCorrectives)
        return;
    takeOutIdle(planned, skipped);
    takeOver(planned);
    order(planned);
}

bool MorphLinks::isConsidered(const DzNumericProperty& dial) const
{
    if (LinksOf(dial).empty())
        return false;
    if (IsCorrective(dial))
        return _request.takesCorrectives;
    // One joint alone may turn a corrective too.
    return _request.takesControllers || (_request.takesCorrectives && dial.isHidden());
}

MorphLinks::Links MorphLinks::comingLinks(const DzNumericProperty& dial, const Dials& present) const
{
    const Links all = LinksOf(dial);
    Links coming;
    std::copy_if(all.begin(), all.end(), std::back_inserter(coming),
                 [&](const DzNumericController* link) { return !FindMissing(*link, present); });
    // A factor that is left out would make more of the morph, so all links count or none.
    return IsCorrective(dial) && coming.size() < all.size() ? Links() : coming;
}

void MorphLinks::takeOutIdle(std::vector<PlannedMorph>& planned, std::vector<SkippedMorph>& skipped) const
{
    std::size_t before = 0;
    do { // what such a one drives itself may be the next one
        before = planned.size();
        const Inputs present = DialsOf(planned);
        const auto isIdle = [&](const PlannedMorph& morph) {
            const DzNumericProperty& dial = *morph.source.dial;
            if (!dial.isHidden() || !isConsidered(dial) || !comingLinks(dial, present).empty())
                return false;
            const DzNumericProperty* missing = nullptr;
            for (const DzNumericController* const link : LinksOf(dial))
                missing = missing ? missing : FindMissing(*link, present);
            skipped.push_back({morph.source.name,
                               fmt::format("is driven by \"{}\", which does not come over", NameOf(*missing)),
                               false});
            return true;
        };
        planned.erase(std::remove_if(planned.begin(), planned.end(), isIdle), planned.end());
    } while (planned.size() < before);
}

void MorphLinks::takeOver(const std::vector<PlannedMorph>& planned)
{
    const Inputs present = DialsOf(planned);
    for (const PlannedMorph& morph : planned) {
        const DzNumericProperty& dial = *morph.source.dial;
        if (!isConsidered(dial))
            continue;
        for (const DzNumericController* const link : LinksOf(dial))
            if (const DzNumericProperty* const missing = FindMissing(*link, present))
                lose(morph.source, *missing);
        const Links coming = comingLinks(dial, present);
        if (coming.empty())
            continue;
        for (DzNumericController* const link : coming) {
            const Inputs inputs = InputsOf(*link);
            _drivers.insert(inputs.begin(), inputs.end());
            link->setActive(false);
        }
        _links[&dial] = coming;
    }
}

void MorphLinks::lose(const ShapeDial& driven, const DzNumericProperty& driver)
{
    if (_lostCount++ == 0)
        _firstLost = fmt::format("\"{}\" is driven by \"{}\"", driven.name, NameOf(driver));
}

void MorphLinks::tellOfLost(base::Diagnostics& diagnostics) const
{
    if (_lostCount > 0)
        diagnostics.push_back({base::Severity::Warning,
                               FileText(_request.source),
                               {},
                               fmt::format("{} behind, whose drivers do not come over: {}{}",
                                           dson::Counted(_lostCount, "link stays", "links stay"), _firstLost,
                                           _lostCount > 1 ? ", and so on" : "")});
}

void MorphLinks::order(std::vector<PlannedMorph>& planned) const
{
    std::map<const DzNumericProperty*, const PlannedMorph*> byDial;
    for (const PlannedMorph& morph : planned)
        byDial[morph.source.dial] = &morph;
    std::set<const DzNumericProperty*> begun; // dials may drive each other in a circle
    std::vector<PlannedMorph> ordered;
    const std::function<void(const PlannedMorph&)> append = [&](const PlannedMorph& morph) {
        if (!begun.insert(morph.source.dial).second)
            return;
        if (const auto links = _links.find(morph.source.dial); links != _links.end())
            for (const DzNumericController* const link : links->second)
                for (const DzNumericProperty* const input : InputsOf(*link))
                    append(*byDial.at(input));
        ordered.push_back(morph);
    };
    for (const PlannedMorph& morph : planned)
        append(morph);
    planned = std::move(ordered);
}

bool MorphLinks::isDriver(const ShapeDial& source) const
{
    return _drivers.count(source.dial) > 0;
}

std::vector<std::string> MorphLinks::connect(const ShapeDial& source, DzNumericProperty& made)
{
    _made[source.dial] = &made;
    const auto links = _links.find(source.dial);
    if (links == _links.end())
        return {};
    Inputs present;
    for (const auto& [dial, counterpart] : _made)
        present.insert(dial);
    // A driver may have been skipped since.
    for (const DzNumericController* const link : links->second)
        if (const DzNumericProperty* const missing = FindMissing(*link, present))
            lose(source, *missing);
    std::set<std::string> drivers;
    for (const DzNumericController* const link : comingLinks(*source.dial, present)) {
        std::unique_ptr<DzNumericController> copy =
            openhost::CopyLink(*link, [this](const DzNumericProperty& input) { return _made.at(&input); });
        if (!copy)
            throw base::Error(fmt::format("\"{}\" is driven in a way that cannot be copied", source.name));
        for (int i = 0; i < copy->getNumInputs(); ++i)
            drivers.insert(NameOf(*copy->getInput(i)));
        made.insertController(copy.release());
    }
    return {drivers.begin(), drivers.end()};
}

} // namespace cli
