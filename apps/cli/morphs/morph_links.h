// How dials of converted morphs drive each other.
// SPDX-License-Identifier: MIT

#pragma once

#include "morphs/morph_plan.h"

#include <map>
#include <set>

class DzNumericController;

namespace cli {

/// Which links between the dials of a figure come over along with its morphs. Those that do are switched off
/// on the figure: what they bring along is no part of the driver's own shape then. Dials that drive each
/// other in a cycle take along what they drive instead.
class MorphLinks {
public:
    /// @param planned      hidden ones that nothing would turn are taken out; drivers stand before what they
    ///                     drive then
    /// @param skipped      receives what is taken out
    MorphLinks(std::vector<PlannedMorph>& planned, const MorphConversionRequest& request,
               std::vector<SkippedMorph>& skipped);

    /// Whether the dial drives another one that comes over, so that it is of use without a shape.
    bool isDriver(const ShapeDial& source) const;
    /// Has the figure show what is the dial's own: what its new morph will not turn itself.
    /// @return whether the figure at rest may be another one for it
    bool prepareFor(const ShapeDial& source);
    /// Notes the dial that stands for a source's, and links it to those that stand for its drivers.
    /// @return the drivers' names
    std::vector<std::string> connect(const ShapeDial& source, DzNumericProperty& made);
    /// Tells of links that stay behind; when all are connected.
    void tellOfLost(base::Diagnostics& diagnostics) const;

private:
    using Links = std::vector<DzNumericController*>;
    using Dials = std::set<const DzNumericProperty*>;

    bool isConsidered(const DzNumericProperty& dial) const;
    bool comes(const DzNumericController& link, const Dials& present) const;
    Links comingLinks(const DzNumericProperty& dial, const Dials& present) const;
    void takeOutIdle(std::vector<PlannedMorph>& planned, std::vector<SkippedMorph>& skipped);
    std::string whyIdle(const DzNumericProperty& dial, const Dials& present) const;
    void findCycles(const std::vector<PlannedMorph>& planned);
    void takeOver(const std::vector<PlannedMorph>& planned);
    void order(std::vector<PlannedMorph>& planned) const;
    Dials turnedWith(const DzNumericProperty& dial) const;

    struct Lost {
        std::size_t count = 0;
        std::string first;
        void add(const ShapeDial& driven, const DzNumericProperty& driver);
        void tell(const MorphConversionRequest& request, const char* why,
                  base::Diagnostics& diagnostics) const;
    };

    const MorphConversionRequest& _request;
    std::map<const DzNumericProperty*, Links> _links; ///< by driven dial
    Dials _drivers;
    std::map<const DzNumericProperty*, DzNumericProperty*> _made; ///< by the source's dial
    std::set<const DzNumericController*> _coming, _inCycles;
    Links _inEffect; ///< of those that come over, for one dial
    Lost _withoutDrivers, _circular;
};

} // namespace cli
