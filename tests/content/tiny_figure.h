// The smallest set of plain files that makes a figure: a cube with three bones.
// SPDX-License-Identifier: MIT

#pragma once

#include "sample_content/make_figure.h"
#include "tests/content/temp_folder.h"

#include <string>

struct TinyFigure {
    TempFolder folder;
    content::MakeFigureOptions options;

    static const char* objText(const char* lastVertex = "v 0 1 1\n")
    {
        static std::string text;
        text = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 0 0 1\nv 1 0 1\nv 1 1 1\n" + std::string(lastVertex) +
               "f 4 3 2 1\nf 5 6 7 8\nf 1 2 6 5\nf 2 3 7 6\nf 3 4 8 7\nf 4 1 5 8\n";
        return text.c_str();
    }
    static std::string skeletonText()
    {
        return R"({"units": "cm", "bones": [{"name": "hip", "parent": null}, {"name": "upperleg.L", "parent": "hip"},
                   {"name": "RightThigh", "parent": "hip"}],
                   "only": {"hip": {"head": [0, 0, 0], "tail": [0, 1, 0]},
                            "upperleg.L": {"head": [1, 0, 0], "tail": [1, -1, 0]},
                            "RightThigh": {"head": [0, 0, 0], "tail": [0, -1, 0]}}})";
    }
    static std::string weightsText()
    {
        return R"({"bones": ["hip"], "vertex_count": 8,
                   "weights": {"hip": {"i": [0, 1, 2, 3, 4, 5, 6], "w": [1, 1, 1, 1, 1, 0.5, 1]},
                               "upperleg.L": {"i": [5], "w": [0.5]}}})";
    }

    explicit TinyFigure(const char* kind = "genesis9")
    {
        options.kind = kind;
        options.mesh = folder.write("neutral.obj", objText());
        options.skeleton = folder.write("skeleton.json", skeletonText());
        options.weights = folder.write("weights.json", weightsText());
        options.contentDirectory = folder.path() / "library";
    }
};
