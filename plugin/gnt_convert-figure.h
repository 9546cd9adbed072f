// One conversion of a source figure's shape into morphs on a Genesis 9 figure.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_params.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class GntForms;
class QWidget;

/// Morph name and dial value of morphs that were not there after the transfer.
typedef std::map<std::string, float> GntMissingMorphs;

/// Lives for one conversion. Puts the two figures back as they were when it goes away, also after a failure.
class GntConverter {
public:
    class Impl;

    /// The whole conversion of what is selected, with its dialogs: asks, converts, and tells of the success
    /// without waiting. Returns also when the user wants no conversion; nothing is changed then.
    /// @throws kst::CanceledException  the user stopped it; kst::Exception on any failure
    static void Exec_X(QWidget* parent);
    /// Whose dialogs Exec_X shows; not owned. Null for the product's own.
    static void SetForms(GntForms* forms);

    /// Reads the scene's selection: exactly one source and one Genesis 9 figure, in any order; bones count as
    /// their figures. Changes nothing.
    /// @throws kst::Exception  with the text for the user
    static std::shared_ptr<GntParams> FindSourceAndTargetInSceneSelected_X();

    /// Resolves the stock figures' files and collects the source's active morphs.
    /// @throws kst::Exception  a file is missing, or the source has no morph dialed in
    explicit GntConverter(std::shared_ptr<GntParams> params);
    ~GntConverter();
    GntConverter(const GntConverter&) = delete;
    GntConverter& operator=(const GntConverter&) = delete;

    /// Runs the whole sequence of steps.
    /// @param targetLabel  the target's label from now on
    /// @param morphPaths, morphNames  one per job, by GntJobIndex; those of other jobs are ignored
    /// @param missing  receives the morphs that could not be found after the transfer
    /// @throws kst::CanceledException  the user stopped it; kst::Exception on any failure
    std::vector<GntCreatedMorph> run_X(GntResolution resolution, std::string_view targetLabel,
                                       const std::vector<std::string>& morphPaths,
                                       const std::vector<std::string>& morphNames, GntJobs jobs,
                                       GntMissingMorphs& missing);

    /// How many morphs of the source are dialed in.
    std::size_t getActiveMorphCount() const;

    /// "{} converted to G9" with the source's present label.
    std::string makeConvertedLabel() const;

private:
    std::unique_ptr<Impl> _pImpl;
};
