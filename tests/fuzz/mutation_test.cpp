// Every fuzz target reads or refuses its seeds, whatever hit them.
// SPDX-License-Identifier: MIT

#include "fuzz/target.h"
#include "tests/fuzz/mutation.h"

#include <chrono>
#include <fstream>

#include <gtest/gtest.h>

namespace {

class FuzzTarget : public testing::Test {
public:
    explicit FuzzTarget(const fuzz::Target& target) : _target(target) {}

    void TestBody() override
    {
        using Clock = std::chrono::steady_clock;
        constexpr int mostMutations = 3000;
        const std::vector<std::string> seeds = _target.seeds(), words = ReadWords(GANTREL_FUZZ_WORDS);
        ASSERT_FALSE(seeds.empty());
        ASSERT_FALSE(words.empty());
        for (const std::string& seed : seeds)
            feed(seed);
        std::mt19937 random(1);
        const Clock::time_point end = Clock::now() + std::chrono::seconds(2);
        for (int i = 0; i < mostMutations && Clock::now() < end; ++i)
            feed(Mutation(seeds, words, random));
    }

private:
    /// A block of just this size: reading beyond it is found by a sanitizer. What is fed lies in a file that
    /// a crash leaves behind.
    void feed(const std::string& bytes) const
    {
        const std::vector<char> block(bytes.begin(), bytes.end());
        const std::filesystem::path kept =
            std::filesystem::path(testing::TempDir()) / (_target.name + std::string(".fed"));
        std::ofstream(kept, std::ios::binary) << bytes;
        _target.feed({block.data(), block.size()});
        std::filesystem::remove(kept);
    }

    fuzz::Target _target;
};

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    for (const fuzz::Target& target : fuzz::Targets())
        testing::RegisterTest((std::string("Fuzz_") + target.name).c_str(),
                              "reads_or_refuses_whatever_hit_its_seeds", nullptr, nullptr, __FILE__, __LINE__,
                              [target] { return new FuzzTarget(target); });
    return RUN_ALL_TESTS();
}
