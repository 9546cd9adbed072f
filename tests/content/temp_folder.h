// A folder that is gone after the test.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include <stdlib.h>

class TempFolder {
public:
    TempFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "gantrel-content-XXXXXX").string();
        _path = ::mkdtemp(pattern.data());
    }
    ~TempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return _path; }
    std::filesystem::path write(const std::string& name, const std::string& text) const
    {
        std::ofstream(_path / name, std::ios::binary) << text;
        return _path / name;
    }

private:
    std::filesystem::path _path;
};
