// What modifiers keep; for the files that implement them.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzmodifier.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzpresentation.h"

#include <QPointer>

#include <cstdint>

struct DzModifier::ModifierImpl {
    DzObject* object = nullptr;
    std::unique_ptr<DzPresentation> presentation;
};

struct DzMorph::MorphImpl {
    QPointer<DzFloatProperty> dial; ///< null once it was removed
    DzMorphDeltasPtr deltas;
    DzUri assetUri;
    bool assetModified = false;
    int hdLimit = -1;           ///< no limit
    std::uint64_t sequence = 0; ///< when it entered its object; morphs are added up in this order
    bool pending = false;       ///< the pipeline knows that it changed
    float applied = 0.0f;       ///< the dial as the pipeline last read it
};
