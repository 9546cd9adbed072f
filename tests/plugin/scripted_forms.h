// The dialogs of a conversion, answered by a script.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_forms.h"
#include "gnt_testing.h"

#include <functional>
#include <optional>

/// Answers as it is told, and notes what it was asked. Stands in for the dialogs as long as it lives.
class ScriptedForms : public GntForms {
public:
    bool goesOn = true;
    std::function<void()> meanwhile; ///< what happens while the user is asked
    GntJobs jobs{GntJobFlag::Full};
    bool debugSteps = false;
    std::vector<std::string> names{"Full", "Head", "Body"};
    std::optional<GntConvertQuestion> question;
    std::optional<GntSuccess> success;

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
        GntRequest makeRequest() const override
        {
            GntRequest request;
            request.jobs = _forms.jobs;
            request.names = _forms.names;
            request.paths = {"/G/Full", "/G/Head", "/G/Body"};
            request.debugSteps = _forms.debugSteps;
            return request;
        }

    private:
        const ScriptedForms& _forms;
    };

    std::unique_ptr<GntConvertForm> makeConvertForm(const GntConvertQuestion& asked) override
    {
        question = asked;
        return std::make_unique<Form>(*this);
    }
    void showSuccess(const GntSuccess& told) override { success = told; }

    const GntFormsOverride _override{*this};
};
