// What the scene keeps; for the files that implement it.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzscene.h"

#include <QHash>
#include <QPointer>
#include <QSet>

#include <algorithm>
#include <vector>

namespace openhost {

/// What the roots are called, gathered once for many that come: a scene may hold thousands of one name.
struct RootTexts {
    QSet<QString> taken;
    mutable QHash<QString, int> firstFree; ///< by pattern and stem; below it all are taken
    bool isGathered = false;

    QString freeText(const QString& stem, const QString& pattern) const
    {
        int& number = firstFree[pattern + stem];
        for (number = std::max(number, 2);; ++number) {
            const QString candidate = pattern.arg(stem, QString::number(number));
            if (!taken.contains(candidate))
                return candidate;
        }
    }
};

} // namespace openhost

struct DzScene::Impl {
    const openhost::RootTexts& textsOfRoots(openhost::RootTexts& texts,
                                            QString (*textOf)(const DzNode&)) const
    {
        if (texts.isGathered)
            return texts;
        texts = {};
        for (const DzNode* node : nodes)
            if (node->isRootNode())
                texts.taken.insert(textOf(*node));
        texts.isGathered = true;
        return texts;
    }

    QList<DzNode*> nodes;
    QList<DzNode*> selection;
    DzNode* primary = nullptr;
    std::vector<QPointer<DzNode>> removed; ///< roots whose deletion is due
    std::vector<const DzNode*> leaving;    ///< roots of what is just being removed
    DzTime time = 0;
    int loading = 0;
    int heldLoads = 0; ///< those that are a step each
    openhost::RootTexts labels, names;
};
