// One conversion of a source figure's shape into morphs on a Genesis 9 figure.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_outcome.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class DzNode;
class QWidget;

/// By which a conversion finds the figures that it loads: no other node may have these labels when it begins.
/// The source may, and the target may have the last, since they are labelled anew before.
struct GntLoadedLabels {
    const char *stock, *temporary;
};

/// Lives for one conversion. Puts the two figures back as they were when it goes away, also after a failure.
class GntConverter {
public:
    class Impl;

    /// The whole conversion of what is selected, with its dialogs: asks, converts, and tells of the success
    /// without waiting. Returns also when the user wants no conversion; nothing is changed then.
    /// @throws kst::CanceledException  the user stopped it; kst::Exception on any failure
    static void Exec_X(QWidget* parent);
    /// The same of two given figures, with a request instead of dialogs. Selects them, and leaves the source
    /// at the level that a subdivided conversion is asked for.
    /// @param source, target  figures or bones of theirs
    /// @throws kst::CanceledException  the user stopped it; kst::Exception on any failure
    static GntOutcome Convert_X(DzNode& source, DzNode& target, const GntRequest& request);

    /// Whether the figure is of a kind that can be converted from, or to. The node of a bone is none.
    static bool IsSource(const DzNode& node);
    static bool IsTarget(const DzNode& node);
    /// @param source  IsSource()
    static GntLoadedLabels LoadedLabels(const DzNode& source);

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

    /// Sets the bases and runs the whole sequence of steps.
    /// @throws kst::CanceledException  the user stopped it; kst::Exception on any failure
    GntOutcome run_X(const GntRequest& request);
    /// The same with the request's members one by one.
    /// @param missing  receives the morphs that could not be found after the transfer
    std::vector<GntCreatedMorph> run_X(GntResolution resolution, std::string_view targetLabel,
                                       const std::vector<std::string>& morphPaths,
                                       const std::vector<std::string>& morphNames, GntJobs jobs,
                                       GntMissingMorphs& missing);

    /// How many morphs of the source are dialed in.
    std::size_t getActiveMorphCount() const;

    /// "{} converted to G9" with the source's present label.
    std::string makeConvertedLabel() const;

private:
    /// With a value for all that the request leaves to the product.
    GntRequest complete(const GntRequest& request) const;

    std::unique_ptr<Impl> _pImpl;
};
