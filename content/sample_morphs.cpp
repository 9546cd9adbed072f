// The sample figures' dials.
// SPDX-License-Identifier: MIT

#include "sample_figures.h"

namespace content {

using namespace shapes;

const std::vector<SampleMorph>& SourceMorphs()
{
    static const std::string body = "/Full Body/Real World", region = "/Body/Real World",
                             head = "/Head/Real World", face = "/Head/Face/Real World",
                             expression = "/Head/Expressions";
    static const std::vector<SampleMorph> morphs{
        {"FBMHeavy", "Heavy", body, {{Heavier, 1.0f}}},
        {"FBMThin", "Thin", body, {{Heavier, -0.45f}, {FullerCheeks, -0.4f}}},
        {"FBMMuscular", "Muscular", body, {{MoreMuscle, 1.4f}, {ThickerNeck, 0.6f}}},
        {"FBMPear", "Pear Figure", body, {{WiderHips, 2.2f}, {FullerSeat, 1.2f}, {BroaderShoulders, -0.4f}}},
        {"FBMShort", "Short", body, {{Taller, -1.0f}, {LongerLegs, -0.6f}}},
        {"FBMLongLegs", "Long Legs", body, {{LongerLegs, 1.0f}}},
        {"FBMOld",
         "Old",
         body,
         {{Stooped, 1.0f},
          {Sagging, 1.0f},
          {MoreMuscle, -0.9f},
          {BroaderShoulders, -0.7f},
          {LongerLegs, -0.3f}}},
        {"FBMChild",
         "Child",
         body,
         {{Taller, -3.7f},
          {LargerHead, 3.4f},
          {LongerLegs, -0.8f},
          {LargerBelly, 0.25f},
          {BroaderShoulders, -1.3f},
          {FullerBreasts, -0.4f},
          {MoreMuscle, -0.7f},
          {NarrowerWaist, -0.9f},
          {ThickerNeck, -0.6f}}},
        {"FBMHeroic",
         "Heroic",
         body,
         {{Taller, 0.4f},
          {LongerLegs, 0.8f},
          {BroaderShoulders, 1.3f},
          {MoreMuscle, 1.2f},
          {NarrowerWaist, 0.9f},
          {ThickerNeck, 0.2f},
          {LargerHands, 0.3f}}},
        {"PBMBroadShoulders", "Broad Shoulders", region, {{BroaderShoulders, 1.2f}}},
        {"PBMBelly", "Belly", region, {{LargerBelly, 1.0f}}},
        {"PBMBreastSize", "Breast Size", region, {{FullerBreasts, 0.8f}}, -1.0f},
        {"PBMBigHands", "Big Hands", region, {{LargerHands, 1.0f}}},
        {"PBMBigFeet", "Big Feet", region, {{LargerFeet, 1.0f}}},
        {"PBMUnevenBody", "Uneven Body", region, {{TurnedTrunk, 1.0f}}},
        {"PHMBigHead", "Big Head", head, {{LargerHead, 1.0f}}, -1.0f},
        {"PHMNarrowFace", "Narrow Face", head, {{NarrowerFace, 1.0f}}},
        {"PHMWideJaw", "Wide Jaw", face, {{WiderJaw, 1.0f}}},
        {"PHMLongChin", "Long Chin", face, {{LongerChin, 1.0f}}},
        {"PHMHeavyBrow", "Heavy Brow", face, {{HeavierBrow, 1.0f}}},
        {"PHMLargeEyes", "Large Eyes", face, {{LargerEyes, 1.0f}}},
        {"PHMFullCheeks", "Full Cheeks", face, {{FullerCheeks, 1.0f}}},
        {"PHMLongNose", "Long Nose", face, {{LongerNose, 1.0f}}},
        {"PHMWideNose", "Wide Nose", face, {{WiderNose, 1.0f}}},
        {"PHMFullLips", "Full Lips", face, {{FullerLips, 1.0f}}},
        {"PHMElfEars", "Elf Ears", face, {{PointedEars, 1.0f}}},
        {"PHMUnevenFace", "Uneven Face", face, {{UnevenFace, 1.0f}}},
        {"PHMOldFace", "Old Face", face, {{AgedFace, 1.0f}}},
        {"PHMYoungFace", "Young Face", face, {{YoungFace, 1.0f}}},
        {"PHMEyesClosed", "Eyes Closed", expression, {{EyesClosed, 1.0f}}},
        {"PHMMouthOpen", "Mouth Open", expression, {{MouthOpen, 1.0f}}},
        {"PHMSmile", "Smile", expression, {{Smile, 1.0f}}},
        {"PHMBrowsUp", "Brows Up", expression, {{BrowsUp, 1.0f}}},
        {"PHMFrown", "Frown", expression, {{Frown, 1.0f}}}};
    return morphs;
}

const std::vector<SampleMorph>& TargetMorphs()
{
    static const std::string body = "/Body/Shapes", head = "/Head/Shapes", driven = "/General/Misc";
    static const std::vector<SampleMorph> morphs{
        {"body_bs_Heavy", "Heavy", body, {{Heavier, 1.0f}}},
        {"body_bs_Muscular", "Muscular", body, {{MoreMuscle, 1.2f}}},
        {"body_bs_Belly", "Belly", body, {{LargerBelly, 1.0f}}},
        {"head_bs_LongNose", "Long Nose", head, {{LongerNose, 1.0f}}},
        {"head_bs_ElfEars", "Elf Ears", head, {{PointedEars, 1.0f}}},
        {"head_bs_FullLips", "Full Lips", head, {{FullerLips, 1.0f}}},
        {"body_bs_BaseFeminine",
         "Base Feminine Body",
         driven,
         {{FullerBreasts, 0.8f},
          {WiderHips, 0.8f},
          {NarrowerWaist, 0.8f},
          {BroaderShoulders, -0.6f},
          {FullerSeat, 0.6f}}},
        {"head_bs_BaseFeminine",
         "Base Feminine Head",
         driven,
         {{WiderJaw, -0.6f}, {HeavierBrow, -0.6f}, {FullerLips, 0.4f}, {LargerEyes, 0.4f}}},
        {"body_bs_BaseMasculine",
         "Base Masculine Body",
         driven,
         {{MoreMuscle, 0.7f}, {BroaderShoulders, 0.8f}, {ThickerNeck, 0.6f}, {LargerHands, 0.3f}}},
        {"head_bs_BaseMasculine",
         "Base Masculine Head",
         driven,
         {{WiderJaw, 0.7f}, {HeavierBrow, 0.7f}, {LongerChin, 0.4f}}},
        {proportionHeightName, "Proportion Height", "/Body/Proportions", {{Taller, 1.0f}}, -1.0f}};
    return morphs;
}

} // namespace content
