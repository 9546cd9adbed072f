// What only tests do to the product.
// SPDX-License-Identifier: MIT

#pragma once

class GntForms;

/// As long as it lives, other forms take the place of the product's dialogs. They are borrowed. Of several
/// the newest counts.
class GntFormsOverride {
public:
    explicit GntFormsOverride(GntForms& forms);
    ~GntFormsOverride();
    GntFormsOverride(const GntFormsOverride&) = delete;
    GntFormsOverride& operator=(const GntFormsOverride&) = delete;

private:
    GntForms& _forms;
};
