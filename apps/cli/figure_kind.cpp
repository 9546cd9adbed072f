// The kinds of stock figures by the names of the command line.
// SPDX-License-Identifier: MIT

#include "figure_kind.h"

namespace cli {

const char* FigureKindName(kst::daz::BaseFigure kind)
{
    using kst::daz::BaseFigure;
    switch (kind) {
    case BaseFigure::Genesis3Female:
        return "genesis3female";
    case BaseFigure::Genesis8Female:
        return "genesis8female";
    case BaseFigure::Genesis8_1Female:
        return "genesis8_1female";
    case BaseFigure::Genesis3Male:
        return "genesis3male";
    case BaseFigure::Genesis8Male:
        return "genesis8male";
    case BaseFigure::Genesis8_1Male:
        return "genesis8_1male";
    case BaseFigure::Genesis9:
        return "genesis9";
    case BaseFigure::None:
        break;
    }
    return "other";
}

} // namespace cli
