// The host's Transfer Utility, driven by method name.
// SPDX-License-Identifier: MIT

#include "ks_transfer-utility.h"

#include "ks_exception.h"

#include <dzapp.h>
#include <dzclassfactory.h>

namespace kst {
namespace daz {

namespace {

enum Method : std::size_t {
    SetSource,
    SetTarget,
    SetTransferMorphs,
    SetTransferSourceMorphs,
    SetOverrideExistingMorphs,
    SetTransferBinding,
    SetTransferSelectionMap,
    SetTransferFaceGroups,
    SetTransferRegionGroups,
    SetTargetReplacesSource,
    SetParentToFigure,
    SetMorphTransferList,
    DoTransfer
};

} // namespace

const std::vector<const char*>& TransferUtility::Signatures()
{
    static const std::vector<const char*> signatures{"setSource(DzNode*)",
                                                     "setTarget(DzNode*)",
                                                     "setTransferMorphs(bool)",
                                                     "setTransferSourceMorphs(int)",
                                                     "setOverrideExistingMorphs(bool)",
                                                     "setTransferBinding(bool)",
                                                     "setTransferSelectionMap(bool)",
                                                     "setTransferFaceGroups(bool)",
                                                     "setTransferRegionGroups(bool)",
                                                     "setTargetReplacesSource(bool)",
                                                     "setParentToFigure(bool)",
                                                     "setMorphTransferList(QStringList)",
                                                     "doTransfer()"};
    return signatures;
}

std::shared_ptr<TransferUtility> TransferUtility::Create()
{
    const DzClassFactory* const factory = dzApp->findClassFactory(QLatin1String("DzTransferUtility"));
    if (!factory)
        throw Exception("cannot find DzTransferUtility class factory");
    std::unique_ptr<QObject> object(factory->createInstance());
    if (!object)
        throw Exception("{} factory failed to create object", "DzTransferUtility");
    return std::shared_ptr<TransferUtility>(new TransferUtility(std::move(object)));
}

TransferUtility::TransferUtility(std::unique_ptr<QObject> object)
    : MagicImpl<QObject, TransferUtility>(*object), _object(std::move(object))
{
}

TransferUtility::~TransferUtility() = default;

bool TransferUtility::setBool(std::size_t method, bool on)
{
    return invokeBool(method, Q_ARG(bool, on));
}

bool TransferUtility::setNode(std::size_t method, DzNode* node)
{
    return invokeBool(method, Q_ARG(DzNode*, node));
}

bool TransferUtility::setSource(DzNode* node)
{
    return setNode(SetSource, node);
}

bool TransferUtility::setTarget(DzNode* node)
{
    return setNode(SetTarget, node);
}

bool TransferUtility::setParentToFigure(bool on)
{
    return setBool(SetParentToFigure, on);
}

bool TransferUtility::setTransferBinding(bool on)
{
    return setBool(SetTransferBinding, on);
}

bool TransferUtility::setTransferSelectionMap(bool on)
{
    return setBool(SetTransferSelectionMap, on);
}

bool TransferUtility::setTransferFaceGroups(bool on)
{
    return setBool(SetTransferFaceGroups, on);
}

bool TransferUtility::setTransferRegionGroups(bool on)
{
    return setBool(SetTransferRegionGroups, on);
}

bool TransferUtility::setTransferMorphs(bool on)
{
    return setBool(SetTransferMorphs, on);
}

bool TransferUtility::setTransferSourceMorphs(SourceMorphTransferType type)
{
    const int number = static_cast<int>(type);
    return invokeBool(SetTransferSourceMorphs, Q_ARG(int, number));
}

void TransferUtility::setMorphTransferList(const QStringList& names)
{
    invoke(SetMorphTransferList, Q_ARG(QStringList, names));
}

bool TransferUtility::setOverrideExistingMorphs(bool on)
{
    return setBool(SetOverrideExistingMorphs, on);
}

bool TransferUtility::setTargetReplacesSource(bool on)
{
    return setBool(SetTargetReplacesSource, on);
}

bool TransferUtility::doTransfer()
{
    return invokeBool(DoTransfer);
}

} // namespace daz
} // namespace kst
