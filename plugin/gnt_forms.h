// What a conversion asks its user before, and tells after it.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_outcome.h"

#include <cstddef>
#include <memory>
#include <string>

class DzAppSettings;
class QWidget;

/// The user's decisions.
class GntConvertForm {
public:
    virtual ~GntConvertForm();

    /// Asks. False when the user does not want to go on.
    virtual bool exec() = 0;
    /// What the user wants, once that is known.
    virtual GntRequest makeRequest() const = 0;
};

/// What the form begins with.
struct GntConvertQuestion {
    QWidget* parent;
    std::shared_ptr<GntParams> params;
    std::size_t activeMorphCount;
    std::string defaultMorphName;
    DzAppSettings* settings; ///< where choices are remembered; borrowed, never null
};

/// What the user is told in the end.
struct GntSuccess {
    QWidget* parent;
    GntOutcome outcome;
    std::string elapsed; ///< for the user, such as "12 seconds"
    std::string note;    ///< HTML about morphs that could not be found; empty when none is missing
};

/// Makes the dialogs of a conversion, so that it runs as well where nobody looks.
class GntForms {
public:
    virtual ~GntForms();

    virtual std::unique_ptr<GntConvertForm> makeConvertForm(const GntConvertQuestion& question) = 0;
    /// Tells of the success and does not wait until the user has read it.
    virtual void showSuccess(const GntSuccess& success) = 0;
};
