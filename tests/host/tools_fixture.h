// Meshes, figures and files for the tests of the tools.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzfileiosettings.h"
#include "figure/mesh_access.h"
#include "geometry/polygon_mesh.h"
#include "tests/host/host_fixture.h"

#include <memory>
#include <string>
#include <vector>

class DzBone;
class DzFigure;
class DzMorph;
class DzNode;

/// A tube of quads along X, eight sides of radius 3 cm and segments of 5 cm, symmetric about X = 0 and closed
/// nowhere; face groups "left" and "right" of X = 0, one surface.
geometry::PolygonMesh Tube(int segments);

DzNode* AddProp(const char* label, geometry::PolygonMesh mesh);

/// A tube with bones "upper" and "lower" that meet at X = 0, where their weights blend.
struct TubeFigure {
    explicit TubeFigure(const char* label = "Tube", bool dualQuaternion = true, int segments = 8,
                        bool subdivides = false);
    DzMorph* addMorph(const char* name, std::vector<std::uint32_t> vertices,
                      std::vector<geometry::Vec3f> deltas) const;

    DzFigure* figure;
    DzBone* upper;
    DzBone* lower;
};

/// The mesh as it stands in the world.
std::vector<geometry::Vec3f> WorldPositions(const DzNode& node);
/// Largest distance between vertices of the same number, cm; infinite when the counts differ.
float LargestDistance(const std::vector<geometry::Vec3f>& a, const std::vector<geometry::Vec3f>& b);
/// Writes `v` records only.
QString WritePositions(const char* name, const std::vector<geometry::Vec3f>& positions);
QString TestFile(const char* name);
std::string FileText(const QString& file);
