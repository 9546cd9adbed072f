// Fits that were made a moment ago.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "fingerprint.h"
#include "geometry/vec3.h"

#include <functional>
#include <list>
#include <mutex>
#include <vector>

namespace geometry {

/// What Subdivision::fit is asked for.
struct FitQuestion {
    base::Span<const Vec3f> fine;
    int fineLevel;
    base::Span<const Vec3f> start;
    int startLevel;
    double accuracy;
};

/// The answers to the last few questions: whoever makes several morphs of one shape, each for a part of the
/// figure, asks for the same fits each time. Any thread may ask.
class KnownFits {
public:
    std::vector<Vec3f> findOrMake(const FitQuestion& question,
                                  const std::function<std::vector<Vec3f>()>& make);
    void forget();

private:
    struct Known {
        Fingerprint question;
        std::vector<Vec3f> answer;
    };
    std::mutex _mutex;
    std::list<Known> _known; ///< the newest comes first
};

} // namespace geometry
