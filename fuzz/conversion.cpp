// A whole conversion whose source brings a morph of strangers.
// SPDX-License-Identifier: MIT

#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "fuzz/fuzzed_host.h"
#include "fuzz/target.h"
#include "gnt_convert-figure.h"
#include "ks_exception.h"
#include "tests/host/content_fixture.h"
#include "tests/plugin/mini_library.h"

namespace {

const std::filesystem::path& Library()
{
    static const std::filesystem::path library = [] {
        WriteMiniLibrary(fuzz::ScratchFolder() / "conversion");
        qputenv("TMPDIR", TestFolder().toUtf8());
        return fuzz::ScratchFolder() / "conversion";
    }();
    return library;
}

std::filesystem::path Morph(const char* name)
{
    return Library() / "data/Daz 3D/Genesis 8/Female/Morphs/Test/Base" / name;
}

std::vector<std::string> Seeds()
{
    return {ReadBytes(Morph("Wide.dsf")), ReadBytes(Morph("Unused.dsf"))};
}

/// What was opened and is selected then; null when it cannot be.
DzFigure* Load(const char* file)
{
    return fuzz::Open(Library() / file) ? qobject_cast<DzFigure*>(dzScene->getPrimarySelection()) : nullptr;
}

void Convert()
{
    const GntJobs jobs = GntJobs(GntJobFlag::Full) | GntJobFlag::Head;
    GntMissingMorphs missing;
    try {
        GntConverter converter(GntConverter::FindSourceAndTargetInSceneSelected_X());
        converter.run_X(GntResolution::Base, converter.makeConvertedLabel(),
                        {"/G/Full", "/G/Head", "/G/Body"}, {"Full", "Head", "Body"}, jobs, missing);
    } catch (const kst::Exception&) {
    }
}

void Feed(std::string_view bytes)
{
    WriteBytes(Morph("Fed.dsf"), std::string(bytes));
    fuzz::FreshHost(Library());
    DzFigure* const source = Load("People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf");
    DzFigure* const target = Load("People/Genesis 9/Genesis 9.duf");
    fuzz::Demand(source && target, "a bad morph keeps no figure from loading");
    for (const char* const name : {"Wide", "Fed", "Unused"})
        if (DzFloatProperty* const dial = DialOf(*source, name))
            dial->setValue(0.5f);
    dzScene->selectAllNodes(false);
    source->select(true);
    target->select(true);
    Convert();
}

const fuzz::Registration registration({"conversion", Seeds, Feed});

} // namespace
