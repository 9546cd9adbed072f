// A folder that goes with its test.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>

#include <stdlib.h>

class ScratchFolder {
public:
    ScratchFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "gantrel-test-XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("no temporary folder can be made");
        _path = std::filesystem::canonical(name);
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const { return _path; }
    void clear() const
    {
        for (const auto& entry : std::filesystem::directory_iterator(_path))
            std::filesystem::remove_all(entry.path());
    }
    std::filesystem::path write(const std::string& name, const std::string& content) const
    {
        std::ofstream(_path / name, std::ios::binary) << content;
        return _path / name;
    }
    std::string read(const std::string& name) const
    {
        std::ifstream file(_path / name, std::ios::binary);
        return std::string((std::istreambuf_iterator<char>(file)), {});
    }
    /// Of all files, by name.
    std::map<std::string, std::string> contents() const
    {
        std::map<std::string, std::string> all;
        for (const auto& entry : std::filesystem::directory_iterator(_path))
            all[entry.path().filename().string()] = read(entry.path().filename().string());
        return all;
    }

private:
    std::filesystem::path _path;
};
