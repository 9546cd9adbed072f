// What a conversion asks its user before, and tells after it.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_params.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class DzAppSettings;
class QWidget;

/// The user's decisions. Lists hold one value a job, by GntJobIndex.
class GntConvertForm {
public:
    virtual ~GntConvertForm();

    /// Asks. False when the user does not want to go on.
    virtual bool exec() = 0;
    virtual std::vector<std::string> getMorphPaths() const = 0;
    virtual bool isDebuggingSteps() const = 0; ///< the user confirms each step
    virtual GntResolution getResolution() const = 0;
    virtual std::vector<std::string> getMorphNames() const = 0;
    virtual GntJobs getJobs() const = 0;
};

/// What the form begins with.
struct GntConvertQuestion {
    QWidget* parent;
    std::shared_ptr<GntParams> params;
    std::size_t activeMorphCount;
    std::string defaultMorphName;
    DzAppSettings* settings; ///< where choices are remembered; borrowed, never null
};

/// What has come of it.
struct GntConvertOutcome {
    QWidget* parent;
    std::shared_ptr<GntParams> params;
    std::vector<GntCreatedMorph> created;
    std::string elapsed; ///< for the user, such as "12 seconds"
    std::string note;    ///< HTML about morphs that could not be found; empty when none is missing
};

/// Makes the dialogs of a conversion, so that it runs as well where nobody looks.
class GntForms {
public:
    virtual ~GntForms();

    virtual std::unique_ptr<GntConvertForm> makeConvertForm(const GntConvertQuestion& question) = 0;
    /// Tells of the success and does not wait until the user has read it.
    virtual void showSuccess(const GntConvertOutcome& outcome) = 0;
};
