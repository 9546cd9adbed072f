// The state of one conversion and its single operations.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_convert-figure.h"
#include "gnt_figure-files.h"
#include "gnt_temp-folder.h"
#include "ks_daz-helpers.h"
#include "ks_morph-loader.h"
#include "ks_morphlist.h"
#include "ks_node-list.h"

#include <QString>

#include <dzappsettings.h>

class DzContentMgr;
class DzNode;
class GntStepper;

class GntConverter::Impl {
public:
    typedef std::vector<kst::MorphList::ActiveMorph> MorphValues; ///< (name, dial value) pairs

    explicit Impl(std::shared_ptr<GntParams> params);
    ~Impl();

    /// The progress texts of a run, in the order in which they are shown.
    std::vector<std::string> prepareSteps(GntResolution resolution, GntJobs jobs) const;
    /// Undoes what the conversion changed on the two figures; nothing to do the second time but the
    /// resolution.
    void restoreSourceAndTargetParams();

    /// From the node's morph list, so that a figure with an unsound morph is refused.
    static DzFloatProperty& FindMorphProperty_X(DzNode& node, std::string_view name);
    /// Base, or subdivided at the level, whose maximum is raised to it where needed.
    static void SetResolution_X(DzFigure& figure, GntResolution resolution, int subdLevel);

    /// High resolution; at the level if there is one.
    static void Subdivide_X(DzFigure& figure, const std::optional<int>& level);
    /// Runs a request that is complete; fills in what was created and what is missing.
    void runSteps_X(GntOutcome& outcome);

    // The single operations. Names ending in _X throw kst::Exception when the host does not do what was
    // asked.

    /// Places and turns the target like the source, at height 0, and gives the source a label of its own.
    void S1_MoveTargetG9ToWorldOrigin();
    /// @return absolute path of the written file
    std::string exportSelectedAsObj_X(const std::string& stem);
    DzFigure& loadGenesis_X(GntLoadFigure which, GntResolution resolution, int subdLevel);
    DzNode& importObj_X(const std::string& path);
    DzNode& findSceneNode_X(const std::string& label);
    DzFloatProperty& findNewMorphProperty_X(DzNode& node, const std::string& morphName,
                                            const std::string& report);
    DzFigure& S3_LoadTempG9ForFitSuit_X(GntResolution resolution);
    /// @return the figure that the Transfer Utility made of the fit suit
    DzNode& S7_RunTransferUtilityOnFitSuitToCreateMorphs_X(DzNode& source, DzNode& fitSuit,
                                                           const MorphValues& morphs,
                                                           const std::string& fitSuitLabel);
    void runTransferUtility(DzNode& source, DzNode& target, const MorphValues& morphs);
    void S8_DialUpMorphsInFitSuitWithTransfers_X(DzNode& figure, const MorphValues& morphs,
                                                 GntMissingMorphs& missing);
    /// A morph of the whole mesh at base resolution, from a file of this conversion's.
    static kst::MorphLoad MakeMorphLoad_X(const std::string& objPath, const std::string& morphName,
                                          const std::string& morphPath);
    /// @param sign  1 keeps the weight map's part, -1 its complement; an empty path keeps all
    DzFloatProperty& createMorph_X(GntStepper& stepper, DzFigure& target, const std::string& objPath,
                                   GntResolution resolution, int subdLevel, const std::string& morphName,
                                   const std::string& morphPath, const std::string& weightMapPath,
                                   float sign);
    DzFloatProperty& createHeadOrBodyMorph_X(GntStepper& stepper, GntResolution resolution,
                                             const std::string& objPath, const std::string& morphName,
                                             const std::string& morphPath, int subdLevel, float sign);
    void loadHeadSplitDFormerOnce_X();
    std::string getAbsolutePath_X(const char* relativePath);

    // The driver's paragraphs, in order.
    DzNode& makeMorphedStockMesh_X(GntStepper& stepper, GntResolution resolution);
    DzNode& makeFitSuit_X(GntStepper& stepper, GntResolution resolution);
    std::string transferToFitSuit_X(GntStepper& stepper, DzNode& morphedStock, DzNode& fitSuit,
                                    GntMissingMorphs& missing);
    void adjustTargetForMorphCreation_X(GntStepper& stepper, GntResolution resolution,
                                        std::string_view targetLabel);
    void createMorphs_X(GntStepper& stepper, const std::string& objPath, GntOutcome& outcome);
    void removeHeadSplitNodes();

    DzAppSettings settings;
    DzContentMgr& contentManager;
    const std::shared_ptr<GntParams> pParams;
    MorphValues activeMorphs;
    std::unique_ptr<GntTempFolder> ownTempFolder; ///< null unless the setting wants one
    std::string tempFolder;
    std::array<std::string, GNT_FIGURE_FILES.size()> figureFiles; ///< absolute, in GntLoadFigure's order
    kst::NodeList nodeList;
    bool sourceLabelSaved = false; ///< the source has another label than its own
    QString savedSourceLabel;
    std::map<DzFloatProperty*, float> savedValues; ///< of the target, from before the conversion
    kst::daz::NodeResolution sourceResolution = kst::daz::NodeResolution::Unknown;
    bool sourceResolutionChanged = false;
    float thighDegrees = 0.0f; ///< of the left thigh while the target's morphs are built
    bool headSplitLoaded = false;
    std::vector<DzNode*> headSplitNodes; ///< what the D-Former's load added; may be gone again
};
