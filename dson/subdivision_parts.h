// How files want meshes to be subdivided.
// SPDX-License-Identifier: MIT

#pragma once

#include "json_view.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace dson {

struct ParseContext;

/// What the meshes of a file want and do not get. Each kind is told once.
class OddSubdivisions {
public:
    /// @param what   goes on from "the mesh is"
    /// @param asset  id of the mesh
    void add(const std::string& what, const std::string& asset) { _assets[what].push_back(asset); }
    void tell(ParseContext& context) const;

private:
    std::map<std::string, std::vector<std::string>> _assets; ///< by what it is
};

/// Levels above it are read as this one.
constexpr int finestSubdivisionLevel = 10;

/// The nearest level that there is; told when it is not the one that is wanted.
/// @param asset  id of what is subdivided
int SubdivisionLevel(double wanted, const std::string& asset, ParseContext& context);
/// Tells when it is another than the one that there is.
/// @param algorithm  as the setting "SubDAlgorithmControl" has it
void TellAlgorithm(std::optional<double> algorithm, const std::string& asset, ParseContext& context);
/// How borders are treated; empty, and told, for a way that there is not.
std::string EdgeInterpolationMode(const Element& member, const std::string& asset, ParseContext& context);
/// @param setting  as "SubDEdgeInterpolateLevel" has it
std::string EdgeInterpolationMode(double setting, const std::string& asset, ParseContext& context);

} // namespace dson
