// Morphs of the scene as file content.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

class DzMorph;
class DzNode;
class DzNumericController;
class DzProperty;
class QString;

namespace openhost {

class FolderListings;

/// What a data file says of a morph: its dial, group and deltas; the dial's default is 0.
/// @param name  the morph's name in the file; see file_names.h
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

/// By what other morphs of the figure drive the morph's own dial.
struct DialLinks {
    std::vector<dson::Formula> formulas;
    std::vector<DzNumericController*> links; ///< one per formula
};
/// Those that no data file brings along yet, and that files can hold: what reads a property without a URI
/// lasts as long as the scene.
/// @param dial   URI by which the formulas name the morph's dial
/// @param uriOf  of the dials that are driven by
DialLinks DescribeDialLinks(const DzMorph& morph, const std::string& dial,
                            const std::function<std::string(const DzProperty&)>& uriOf);

/// Folder of the file that defines the figure, decoded, such as /data/Acme/Mini/Base; empty for none.
std::string AssetFolder(const DzNode& figure);
/// Of the file that a morph of the figure is saved as, decoded, beginning with '/', below a content
/// directory.
std::string MorphAddress(const DzNode& figure, const std::string& vendor, const std::string& product,
                         const std::string& name);
/// The address with its folders as they are spelled in the content directory, whose case does not count: a
/// second tree beside the first would be the same one on many disks.
std::string AsOnDisk(FolderListings& listings, const std::filesystem::path& contentDirectory,
                     const std::string& address);
/// What a save to the address would replace, as it is spelled on disk, whose case does not count; empty for
/// nothing.
std::filesystem::path PresentFile(FolderListings& listings, const QString& contentDirectory,
                                  const std::string& address);

} // namespace openhost
