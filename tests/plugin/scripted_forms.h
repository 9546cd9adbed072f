// The dialogs of a conversion, answered by a script.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_convert-figure.h"
#include "gnt_forms.h"

#include <functional>
#include <optional>

/// Answers as it is told, and notes what it was asked. Stands in for the dialogs as long as it lives.
class ScriptedForms : public GntForms {
public:
    ScriptedForms() { GntConverter::SetForms(this); }
    ~ScriptedForms() override { GntConverter::SetForms(nullptr); }

    bool goesOn = true;
    std::function<void()> meanwhile; ///< what happens while the user is asked
    GntJobs jobs{GntJobFlag::Full};
    bool debugSteps = false;
    std::vector<std::string> names{"Full", "Head", "Body"};
    std::optional<GntConvertQuestion> question;
    std::optional<GntConvertOutcome> outcome;

private:
    class Form : public GntConvertForm {
    public:
        explicit Form(const ScriptedForms& forms) : _forms(forms) {}
        bool exec() override
        {
            if (_forms.meanwhile)
                _forms.meanwhile();
            return _forms.goesOn;
        }
        std::vector<std::string> getMorphPaths() const override { return {"/G/Full", "/G/Head", "/G/Body"}; }
        bool isDebuggingSteps() const override { return _forms.debugSteps; }
        GntResolution getResolution() const override { return GntResolution::Base; }
        std::vector<std::string> getMorphNames() const override { return _forms.names; }
        GntJobs getJobs() const override { return _forms.jobs; }

    private:
        const ScriptedForms& _forms;
    };

    std::unique_ptr<GntConvertForm> makeConvertForm(const GntConvertQuestion& asked) override
    {
        question = asked;
        return std::make_unique<Form>(*this);
    }
    void showSuccess(const GntConvertOutcome& told) override { outcome = told; }
};
