// Morphs of the scene as file content.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"

#include <vector>

class DzMorph;
class DzNode;
class DzNumericController;

namespace openhost {

/// What a data file says of a morph: its dial, group and deltas; the dial's default is 0.
/// @param name  the morph's name in the file; see FileName
dson::Modifier DescribeMorph(const DzMorph& morph, const DzNode& figure, const std::string& name);

/// By what a morph alone turns, moves or shapes the joints of its figure.
struct JointLinks {
    std::vector<dson::Formula> formulas;
    std::vector<DzNumericController*> links; ///< one per formula
    std::size_t lost = 0;                    ///< that files cannot hold
};
/// Those that no data file brings along yet.
/// @param dial  URI by which the formulas name the morph's dial
JointLinks DescribeJointLinks(const DzMorph& morph, const DzNode& figure, const std::string& dial);

/// A name that is safe as id and as file name: letters, digits, '_' and '-' stay, anything else becomes '_'.
/// Names that are too long end in a mark that tells them apart.
std::string FileName(const std::string& name);

/// Folder of the file that defines the figure, decoded, such as /data/Acme/Mini/Base; empty for none.
std::string AssetFolder(const DzNode& figure);

} // namespace openhost
