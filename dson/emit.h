// DSON values as JSON, members in their documented order.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"
#include "json_text.h"

#include <string>
#include <utility>
#include <vector>

namespace dson {

Json EmitAssetInfo(const AssetInfo& info);
/// @throws base::FormatError  a position is not finite, or a face has more than four corners
Json EmitGeometry(const Geometry& geometry);
Json EmitNode(const Node& node);
/// @param figureId, geometryId  the node and geometry of the same file that the skin binds
/// @param selectionMap  face groups and ids of the bones that they select; if empty, each joint's bone is
///                      selected by the face group of its name
Json EmitSkin(const SkinBinding& skin, const std::string& figureId, const std::string& geometryId,
              const std::vector<std::pair<std::string, std::string>>& selectionMap = {});
/// @throws base::FormatError  a delta is not finite
Json EmitModifier(const Modifier& modifier);
/// Puts what a modifier does into its JSON: the members as its file had them, present values in their places.
/// @throws base::FormatError  a value is not finite
void AddEffect(Json& modifier, const Effect& effect);
/// The `extra` object of a part of a D-Former.
/// @throws base::FormatError  a value is not finite
Json EmitDFormPart(const DFormPart& part);
Json EmitDForm(const DFormAsset& dform);

/// A number in double precision; the others keep single precision.
/// @throws base::FormatError  it is not finite
Json ExactNumber(double value);

Json EmitFormulas(const std::vector<Formula>& formulas);

/// `{count, values: [[index, weight], ...]}`
/// @throws base::FormatError  a weight is not finite, or the two lists differ in length
Json EmitWeights(const std::vector<std::uint32_t>& vertices, const std::vector<float>& weights);

/// The file's first two members; libraries and the scene are added behind them.
Json EmitFileHead(const AssetInfo& info);

} // namespace dson
