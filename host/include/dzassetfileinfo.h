// Where an asset comes from.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzauthor.h"
#include "dzuri.h"

class DzAssetFileInfo {
public:
    DzAssetFileInfo() {}
    explicit DzAssetFileInfo(const DzUri& uri, const DzAuthor& author = DzAuthor())
        : _uri(uri), _author(author)
    {
    }

    DzUri getUri() const { return _uri; }
    DzAuthor getAuthor() const { return _author; }

private:
    DzUri _uri;
    DzAuthor _author;
};
