// Reading documents that are odd somewhere, and what is told of them.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "tests/content/temp_folder.h"

#include <string>

#include <gtest/gtest.h>

class OddDocument : public testing::Test {
protected:
    dson::Document readText(const std::string& text) const
    {
        return dson::ReadDocument(_folder.write("odd.duf", text));
    }
    /// With the members that every document has, and these.
    dson::Document read(const std::string& members) const
    {
        return readText(R"({"file_version": "0.6.0.0", )" + members + "}");
    }
    /// Everything that is told, a line each.
    static std::string told(const dson::Document& document)
    {
        std::string lines;
        for (const base::Diagnostic& met : document.diagnostics)
            lines += (lines.empty() ? "" : "\n") + (met.asset.empty() ? "" : met.asset + ": ") + met.what;
        return lines;
    }

private:
    const TempFolder _folder;
};
