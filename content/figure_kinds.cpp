// The seven kinds of figures and where their files stand in a library.
// SPDX-License-Identifier: MIT

#include "sample_content/figure_kinds.h"

#include "base/errors.h"

namespace content {

const char* const headSplitPath = "/People/Genesis 9/Developer Kit/G9 HeadSplit DFormer.duf";
const char* const cloneNames[4] = {"CloneGenesis3Female", "CloneGenesis3Male", "CloneGenesis8Female",
                                   "CloneGenesis8Male"};
const char* const baseFeminineName = "BaseFeminine_figure_ctrl_Character";
const char* const baseMasculineName = "BaseMasculine_figure_ctrl_Character";
const char* const proportionHeightName = "body_bs_ProportionHeight";

const std::vector<FigureKindInfo>& FigureKinds()
{
    // The vendor's folder is spelled in two ways, as in the libraries that these files stand in for.
    static const std::vector<FigureKindInfo> kinds{
        {FigureKind::Genesis3Female,
         "genesis3female",
         "Genesis3Female",
         "Genesis 3 Female",
         "/data/DAZ 3D/Genesis 3/Female/Genesis3Female.dsf",
         {"/People/Genesis 3 Female/Genesis 3 Female.duf"},
         "/People/Genesis 3 Female"},
        {FigureKind::Genesis3Male,
         "genesis3male",
         "Genesis3Male",
         "Genesis 3 Male",
         "/data/DAZ 3D/Genesis 3/Male/Genesis3Male.dsf",
         {"/People/Genesis 3 Male/Genesis 3 Male.duf"},
         "/People/Genesis 3 Male"},
        {FigureKind::Genesis8Female,
         "genesis8female",
         "Genesis8Female",
         "Genesis 8 Female",
         "/data/Daz 3D/Genesis 8/Female/Genesis8Female.dsf",
         {"/People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf"},
         "/People/Genesis 8 Female"},
        {FigureKind::Genesis8Male,
         "genesis8male",
         "Genesis8Male",
         "Genesis 8 Male",
         "/data/Daz 3D/Genesis 8/Male/Genesis8Male.dsf",
         {"/People/Genesis 8 Male/Developer Kit/Genesis 8 Male Dev Load.duf"},
         "/People/Genesis 8 Male"},
        {FigureKind::Genesis8_1Female,
         "genesis8_1female",
         "Genesis8_1Female",
         "Genesis 8.1 Female",
         "/data/Daz 3D/Genesis 8/Female 8_1/Genesis8_1Female.dsf",
         {"/People/Genesis 8.1 Female/Genesis 8.1 Female.duf"},
         "/People/Genesis 8.1 Female"},
        {FigureKind::Genesis8_1Male,
         "genesis8_1male",
         "Genesis8_1Male",
         "Genesis 8.1 Male",
         "/data/Daz 3D/Genesis 8/Male 8_1/Genesis8_1Male.dsf",
         {"/People/Genesis 8.1 Male/Genesis 8.1 Male.duf"},
         "/People/Genesis 8.1 Male"},
        {FigureKind::Genesis9,
         "genesis9",
         "Genesis9",
         "Genesis 9",
         "/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf",
         {"/People/Genesis 9/Developer Kit/Genesis 9 Dev Load.duf", "/People/Genesis 9/Genesis 9.duf"},
         "/People/Genesis 9"}};
    return kinds;
}

const FigureKindInfo& InfoOf(FigureKind kind)
{
    return FigureKinds()[static_cast<std::size_t>(kind)];
}

const FigureKindInfo& ParseFigureKind(std::string_view keyword)
{
    std::string known;
    for (const FigureKindInfo& info : FigureKinds()) {
        if (info.keyword == keyword)
            return info;
        known += (known.empty() ? "" : ", ") + info.keyword;
    }
    throw base::FormatError("unknown figure kind '{}'; known are {}", std::string(keyword), known);
}

} // namespace content
