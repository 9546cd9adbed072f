// A scene with a source and a target, converted again and again.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "geometry/vec3.h"
#include "gnt_convert-figure.h"
#include "tests/host/host_fixture.h"

#include <map>
#include <string>
#include <vector>

/// What a conversion made: by morph name, one delta a vertex.
using MadeMorphs = std::map<std::string, std::vector<geometry::Vec3f>>;

class ConversionFixture : public HostTest {
protected:
    void SetUp() override;

    /// The source, labelled Vera, has two morphs dialed in. Whatever was in the scene is gone.
    void loadPairInOnePlace(const char* sourcePath);
    /// The same, each placed and turned in its own way.
    void loadPair(const char* sourcePath);
    void selectBoth();
    /// Deletes what a failure left in the scene, as a user does before the next try.
    void deleteLeftOvers();

    static DzFloatProperty& dial(DzFigure& figure, const char* name);
    static DzFloatProperty& transform(DzFigure& figure, const char* name);
    static GntJobs allJobs();

    /// Through the driver, without dialogs.
    std::vector<GntCreatedMorph> convert(GntJobs jobs);

    /// The morphs of the jobs that are there; a name is missing when the target has no such morph.
    MadeMorphs madeMorphs() const;
    /// What a conversion has to leave as it was: the transforms of both, and the source's label, dials and
    /// resolution.
    std::map<std::string, std::string> stateOfBoth() const;
    /// Labels of root nodes that are neither source nor target, with their random characters shown as *.
    std::vector<std::string> otherRoots() const;

    DzFigure* source = nullptr;
    DzFigure* target = nullptr;
    GntMissingMorphs missing;
    GntResolution resolution = GntResolution::Base; ///< of the conversions
};

constexpr const char* genesis3Female = "People/Genesis 3 Female/Genesis 3 Female.duf";
constexpr const char* genesis8Female = "People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf";

/// The random characters of names and labels shown as *.
std::string WithoutChance(const QString& text);
