// Channels of nodes that the host has no property for.
// SPDX-License-Identifier: MIT

#include "loading/kept_channels.h"

#include "dznode.h"

namespace openhost {

namespace {

class Holder : public QObject {
public:
    Holder(QObject& node, dson::JsonTexts held) : QObject(&node), channels(std::move(held)) {}
    dson::JsonTexts channels;
};

Holder* HolderOf(const DzNode& node)
{
    for (QObject* const child : node.children())
        if (auto* const holder = dynamic_cast<Holder*>(child))
            return holder;
    return nullptr;
}

} // namespace

void KeepChannels(DzNode& node, dson::JsonTexts channels)
{
    if (Holder* const holder = HolderOf(node))
        holder->channels = std::move(channels);
    else if (!channels.empty())
        new Holder(node, std::move(channels));
}

const dson::JsonTexts& KeptChannels(const DzNode& node)
{
    static const dson::JsonTexts none;
    const Holder* const holder = HolderOf(node);
    return holder ? holder->channels : none;
}

} // namespace openhost
