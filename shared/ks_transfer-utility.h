// The host's Transfer Utility, driven by method name.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_qt-magic.h"

#include <memory>
#include <vector>

#include <QStringList>

class DzNode;

namespace kst {
namespace daz {

/// Owns one host object. Setters and the transfer answer what the host answers, true in a host whose methods
/// answer nothing; a call that cannot be made throws kst::Exception "failed to invoke {}::{}".
class TransferUtility : public qt::MagicImpl<QObject, TransferUtility> {
public:
    /// Which morphs of the source to transfer, by the host's numbers.
    enum class SourceMorphTransferType : int { NameList = 1, AllMorphs = 5 };

    /// @throws Exception  "cannot find DzTransferUtility class factory", or a method of the table is missing
    static std::shared_ptr<TransferUtility> Create();
    ~TransferUtility();

    bool setSource(DzNode* node);
    bool setTarget(DzNode* node);
    bool setParentToFigure(bool on);
    bool setTransferBinding(bool on);
    bool setTransferSelectionMap(bool on);
    bool setTransferFaceGroups(bool on);
    bool setTransferRegionGroups(bool on);
    bool setTransferMorphs(bool on);
    bool setTransferSourceMorphs(SourceMorphTransferType type);
    void setMorphTransferList(const QStringList& names);
    bool setOverrideExistingMorphs(bool on);
    bool setTargetReplacesSource(bool on);
    bool doTransfer();

    static const std::vector<const char*>& Signatures();
    static std::size_t getResolveCount()
    {
        return ResolveCount();
    } ///< how often the method table was resolved

private:
    explicit TransferUtility(std::unique_ptr<QObject> object);
    bool setBool(std::size_t method, bool on);
    bool setNode(std::size_t method, DzNode* node);

    std::unique_ptr<QObject> _object;
};

} // namespace daz
} // namespace kst
