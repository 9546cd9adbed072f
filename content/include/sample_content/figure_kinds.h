// The seven kinds of figures and where their files stand in a library.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace content {

enum class FigureKind {
    Genesis3Female,
    Genesis3Male,
    Genesis8Female,
    Genesis8Male,
    Genesis8_1Female,
    Genesis8_1Male,
    Genesis9
};

struct FigureKindInfo {
    FigureKind kind;
    std::string keyword; ///< such as "genesis8_1female"
    std::string id;      ///< of the figure's root node
    std::string label;
    std::string figurePath; ///< of the figure file: decoded, below a content directory, with leading '/'
    std::vector<std::string> characterPaths; ///< of the files that load the plain figure; likewise
    std::string peopleFolder;                ///< likewise
};

/// One for each kind, in the enumeration's order.
const std::vector<FigureKindInfo>& FigureKinds();
const FigureKindInfo& InfoOf(FigureKind kind);
/// @throws base::FormatError  the keyword names no kind
const FigureKindInfo& ParseFigureKind(std::string_view keyword);

/// The head-split preset's place.
extern const char* const headSplitPath;
/// The clone shapes' names on the newest generation, one for each of the four base shapes it can stand in
/// for.
extern const char* const cloneNames[4];
/// The dials that a newest-generation figure must have besides.
extern const char* const baseFeminineName;
extern const char* const baseMasculineName;
extern const char* const proportionHeightName;

} // namespace content
