// How dials of converted morphs drive each other.
// SPDX-License-Identifier: MIT

#include "morphs/morph_links.h"

#include "base/counted.h"
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

struct Driven {
    DzNumericProperty* dial;
    DzNumericController* link;
};

std::vector<Driven> DrivenBy(const DzNumericProperty& dial)
{
    std::vector<Driven> driven;
    for (DzControllerListIterator links = dial.slaveControllerListIterator(); links.hasNext();) {
        auto* const link = qobject_cast<DzNumericController*>(links.next());
        auto* const owner = link ? qobject_cast<DzNumericProperty*>(link->getOwner()) : nullptr;
        if (owner)
            driven.push_back({owner, link});
    }
    return driven;
}

/// All that is driven by the dials, directly or through others.
/// @param follows  (link) whether it counts
template <class Follows>
Inputs Reached(std::vector<const DzNumericProperty*> from, const Follows& follows)
{
    Inputs reached;
    while (!from.empty()) {
        const DzNumericProperty& dial = *from.back();
        from.pop_back();
        for (const Driven& driven : DrivenBy(dial))
            if (follows(*driven.link) && reached.insert(driven.dial).second)
                from.push_back(driven.dial);
    }
    return reached;
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

bool MorphLinks::comes(const DzNumericController& link, const Dials& present) const
{
    return !_inCycles.count(&link) && !FindMissing(link, present);
}

MorphLinks::Links MorphLinks::comingLinks(const DzNumericProperty& dial, const Dials& present) const
{
    const Links all = LinksOf(dial);
    Links coming;
    std::copy_if(all.begin(), all.end(), std::back_inserter(coming),
                 [&](const DzNumericController* link) { return comes(*link, present); });
    // A factor that is left out would make more of the morph, so all links count or none.
    return IsCorrective(dial) && coming.size() < all.size() ? Links() : coming;
}

void MorphLinks::takeOutIdle(std::vector<PlannedMorph>& planned, std::vector<SkippedMorph>& skipped)
{
    std::size_t before = 0;
    do { // what such a one drives itself may be the next one
        before = planned.size();
        findCycles(planned);
        const Inputs present = DialsOf(planned);
        const auto isIdle = [&](const PlannedMorph& morph) {
            const DzNumericProperty& dial = *morph.source.dial;
            if (!dial.isHidden() || !isConsidered(dial) || !comingLinks(dial, present).empty())
                return false;
            skipped.push_back({morph.source.name, whyIdle(dial, present), false});
            return true;
        };
        planned.erase(std::remove_if(planned.begin(), planned.end(), isIdle), planned.end());
    } while (planned.size() < before);
}

std::string MorphLinks::whyIdle(const DzNumericProperty& dial, const Dials& present) const
{
    for (const DzNumericController* const link : LinksOf(dial))
        if (const DzNumericProperty* const missing = FindMissing(*link, present))
            return fmt::format("is driven by \"{}\", which is not among the morphs converted here",
                               NameOf(*missing));
    return "is part of a cycle of dials that drive each other, and no dial to be seen";
}

void MorphLinks::findCycles(const std::vector<PlannedMorph>& planned)
{
    _inCycles.clear();
    const Inputs present = DialsOf(planned);
    const auto mayCome = [&](const DzNumericController& link) {
        const auto* const driven = qobject_cast<const DzNumericProperty*>(link.getOwner());
        return driven && present.count(driven) && isConsidered(*driven) && !FindMissing(link, present);
    };
    for (const PlannedMorph& morph : planned) {
        const DzNumericProperty& dial = *morph.source.dial;
        if (!isConsidered(dial))
            continue;
        Inputs reached = Reached({&dial}, mayCome);
        reached.insert(&dial); // which may drive itself
        for (const DzNumericController* const link : LinksOf(dial))
            for (const DzNumericProperty* const input : InputsOf(*link))
                if (mayCome(*link) && reached.count(input))
                    _inCycles.insert(link);
    }
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
                _withoutDrivers.add(morph.source, *missing);
            else if (_inCycles.count(link))
                _circular.add(morph.source, **InputsOf(*link).begin());
        const Links coming = comingLinks(dial, present);
        if (coming.empty())
            continue;
        for (DzNumericController* const link : coming) {
            const Inputs inputs = InputsOf(*link);
            _drivers.insert(inputs.begin(), inputs.end());
            link->setActive(false);
            _coming.insert(link);
        }
        _links[&dial] = coming;
    }
}

MorphLinks::Dials MorphLinks::turnedWith(const DzNumericProperty& dial) const
{
    Dials turned =
        Reached({&dial}, [&](const DzNumericController& link) { return _coming.count(&link) > 0; });
    turned.insert(&dial);
    return turned;
}

bool MorphLinks::prepareFor(const ShapeDial& source)
{
    for (DzNumericController* const link : _inEffect)
        link->setActive(false);
    _inEffect.clear();
    if (_coming.empty())
        return false;
    const Dials turned = turnedWith(*source.dial);
    std::vector<const DzNumericProperty*> left; // what the new morph will have to move by itself
    for (const DzNumericProperty* const dial : turned)
        for (const Driven& driven : DrivenBy(*dial))
            if (!_coming.count(driven.link) && !turned.count(driven.dial))
                left.push_back(driven.dial);
    Dials own = Reached(left, [](const DzNumericController&) { return true; });
    own.insert(left.begin(), left.end());
    for (const DzNumericProperty* const dial : own)
        for (const Driven& driven : DrivenBy(*dial)) {
            const Inputs inputs = InputsOf(*driven.link);
            const bool isDoneThere = std::any_of(inputs.begin(), inputs.end(),
                                                 [&](const auto* input) { return turned.count(input) > 0; });
            if (_coming.count(driven.link) && !isDoneThere)
                _inEffect.push_back(driven.link);
        }
    for (DzNumericController* const link : _inEffect)
        link->setActive(true);
    return !_inEffect.empty();
}

void MorphLinks::Lost::add(const ShapeDial& driven, const DzNumericProperty& driver)
{
    if (count++ == 0)
        first = fmt::format("\"{}\" is driven by \"{}\"", driven.name, NameOf(driver));
}

void MorphLinks::Lost::tell(const MorphConversionRequest& request, const char* why,
                            base::Diagnostics& diagnostics) const
{
    if (count > 0)
        diagnostics.push_back(
            {base::Severity::Warning,
             FileText(request.source),
             {},
             fmt::format("{} behind, {}: {}{}", base::Counted(count, "link stays", "links stay"), why, first,
                         count > 1 ? ", and so on" : "")});
}

void MorphLinks::tellOfLost(base::Diagnostics& diagnostics) const
{
    _withoutDrivers.tell(_request, "whose drivers are not among the morphs converted here", diagnostics);
    _circular.tell(_request,
                   "which form a cycle, and each of the morphs moves by itself what they made it drive",
                   diagnostics);
}

void MorphLinks::order(std::vector<PlannedMorph>& planned) const
{
    std::map<const DzNumericProperty*, const PlannedMorph*> byDial;
    for (const PlannedMorph& morph : planned)
        byDial[morph.source.dial] = &morph;
    std::set<const DzNumericProperty*> begun;
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
            _withoutDrivers.add(source, *missing);
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
