// The same conversion gives the same files, wherever it runs.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_workspace.h"

#include "tests/base/sanitizer_option.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <regex>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// What programs that are started meanwhile take for the machine's processors.
struct Processors {
    explicit Processors(int count) : _count("GANTREL_TEST_PROCESSORS", std::to_string(count)) {}

private:
    const ScopedVariable _replacement{"LD_PRELOAD", GANTREL_PROCESSORS}, _count;
    const SanitizerOption _mayComeLater{"verify_asan_link_order=0"};
};

/// By path; without the time at which they were written.
using Contents = std::map<std::string, std::string>;

class SameBytes : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        shared = std::make_unique<Workspace>();
        ExpectSuccess(RunProgram({"sample-content", shared->path("lib")}));
    }
    static void TearDownTestSuite() { shared.reset(); }

    /// The morphs of a conversion of Vera from the library.
    static Contents convert(const std::string& library, const std::string& savedInto)
    {
        const std::string people = library + "/People/";
        const ProgramResult result = RunProgram(
            {"convert", "--content", library, "--source", people + "Genesis 8 Female/Characters/Vera.duf",
             "--target", people + "Genesis 9/Genesis 9.duf", "--name", "Vera", "--adjust-rig",
             "--save-library", savedInto, "--vendor", "Acme", "--product", "Heroes", "--json"});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return contentsOf(savedInto);
    }

    static Contents contentsOf(const fs::path& folder)
    {
        static const std::regex time("\"modified\" ?: ?\"[^\"]*\"");
        Contents contents;
        for (const auto& entry : fs::recursive_directory_iterator(folder))
            if (entry.is_regular_file()) {
                const std::string path = entry.path().lexically_relative(folder).string();
                contents[path] = std::regex_replace(shared->read((folder / path).string()), time, "");
            }
        return contents;
    }

    /// The library's files, written in the order of their names or in the opposite one.
    static void copy(const fs::path& from, const fs::path& to, bool isForwards)
    {
        std::vector<fs::path> files;
        for (const auto& entry : fs::recursive_directory_iterator(from))
            if (entry.is_regular_file())
                files.push_back(entry.path().lexically_relative(from));
        std::sort(files.begin(), files.end());
        if (!isForwards)
            std::reverse(files.begin(), files.end());
        for (const fs::path& file : files) {
            fs::create_directories((to / file).parent_path());
            fs::copy_file(from / file, to / file);
        }
    }

    static std::unique_ptr<Workspace> shared;
};

std::unique_ptr<Workspace> SameBytes::shared;

/// A folder in memory, where files are listed in the order in which they came; elsewhere if there is none.
class ListedAsMade {
public:
    ListedAsMade()
    {
        std::error_code error;
        const bool isThere = fs::is_directory("/dev/shm", error);
        std::string name =
            ((isThere ? fs::path("/dev/shm") : fs::temp_directory_path()) / "gantrel-test-XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("cannot make a folder");
        path = name;
    }
    ~ListedAsMade()
    {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    ListedAsMade(const ListedAsMade&) = delete;
    ListedAsMade& operator=(const ListedAsMade&) = delete;

    fs::path path;
};

} // namespace

TEST_F(SameBytes, come_from_any_number_of_threads)
{
    Contents first;
    for (const int count : {1, 2, 7}) {
        const Processors processors(count);
        const Contents saved = convert(shared->path("lib"), shared->path("saved-" + std::to_string(count)));
        if (first.empty())
            first = saved;
        EXPECT_FALSE(saved.empty());
        EXPECT_TRUE(saved == first) << count << " threads";
    }
}

TEST_F(SameBytes, come_from_folders_that_were_filled_in_any_order)
{
    const ListedAsMade folder;
    Contents found[2];
    for (const bool isForwards : {true, false}) {
        const std::string name = isForwards ? "forwards" : "backwards";
        copy(shared->path("lib"), folder.path / name, isForwards);
        found[isForwards] = convert((folder.path / name).string(), shared->path("saved-" + name));
    }
    EXPECT_FALSE(found[0].empty());
    EXPECT_TRUE(found[0] == found[1]);
}
