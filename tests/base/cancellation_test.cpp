// Ending long work, and reading what may be waited for.
// SPDX-License-Identifier: MIT

#include "base/cancellation.h"
#include "base/errors.h"
#include "base/file_set.h"
#include "base/input_file.h"
#include "tests/base/counted_asks.h"
#include "tests/base/scratch_folder.h"

#include <exception>
#include <string>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

std::string ReadAll(const fs::path& file)
{
    base::InputFile input(file);
    std::string bytes;
    char buffer[3];
    while (const std::size_t count = input.read(buffer, sizeof buffer))
        bytes.append(buffer, count);
    return bytes;
}

fs::path MakePipe(const ScratchFolder& folder)
{
    const fs::path pipe = folder.path() / "pipe";
    EXPECT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    return pipe;
}

TEST(Cancellation, comes_when_the_source_says_so_and_never_without_one)
{
    EXPECT_NO_THROW(base::ThrowIfCancelled());
    {
        const CountedAsks asks(2);
        EXPECT_NO_THROW(base::ThrowIfCancelled());
        EXPECT_THROW(base::ThrowIfCancelled(), base::Cancelled);
    }
    EXPECT_NO_THROW(base::ThrowIfCancelled());
}

TEST(Cancellation, is_taken_for_no_failure)
{
    const CountedAsks asks(1);
    const auto swallow = [] {
        try {
            base::ThrowIfCancelled();
        } catch (const std::exception&) {
        }
    };
    EXPECT_THROW(swallow(), base::Cancelled);
}

TEST(Cancellation, lets_what_puts_things_in_order_finish)
{
    const CountedAsks asks(1);
    bool isInOrder = false;
    struct Order {
        bool& isInOrder;
        ~Order()
        {
            base::ThrowIfCancelled();
            std::thread([] { base::ThrowIfCancelled(); }).join();
            isInOrder = true;
        }
    };
    const auto work = [&isInOrder] {
        const Order order{isInOrder};
        base::ThrowIfCancelled();
    };
    EXPECT_THROW(work(), base::Cancelled);
    EXPECT_TRUE(isInOrder);
    EXPECT_THROW(base::ThrowIfCancelled(), base::Cancelled) << "what begins afterwards";
}

TEST(InputFile, reads_files_and_tells_why_it_cannot)
{
    const ScratchFolder folder;
    EXPECT_EQ(ReadAll(folder.write("text", "some text")), "some text");
    EXPECT_EQ(ReadAll(folder.write("empty", "")), "");
    try {
        ReadAll(folder.path() / "none");
        ADD_FAILURE();
    } catch (const base::IoError& error) {
        EXPECT_EQ(error.what(),
                  "cannot read " + (folder.path() / "none").string() + ": No such file or directory");
    }
    EXPECT_THROW(ReadAll(folder.path()), base::IoError);
}

TEST(InputFile, reads_all_that_a_pipe_gives_whenever_that_is)
{
    const ScratchFolder folder;
    const fs::path pipe = MakePipe(folder);
    std::thread writer([&pipe] {
        const int file = open(pipe.c_str(), O_WRONLY | O_CLOEXEC); // waits for the reader
        EXPECT_EQ(write(file, "some ", 5), 5);
        std::this_thread::sleep_for(std::chrono::milliseconds(60));
        EXPECT_EQ(write(file, "text", 4), 4);
        close(file);
    });
    EXPECT_EQ(ReadAll(pipe), "some text");
    writer.join();
}

TEST(InputFile, waits_for_a_pipe_only_until_it_is_cancelled)
{
    const ScratchFolder folder;
    const fs::path pipe = MakePipe(folder);
    const CountedAsks nobodyWrites(5);
    EXPECT_THROW(ReadAll(pipe), base::Cancelled);
    EXPECT_GE(nobodyWrites.count(), 5);
    EXPECT_LT(nobodyWrites.count(), 10);
}

TEST(FileSet, leaves_all_files_as_they_were_when_it_is_cancelled)
{
    const ScratchFolder folder;
    folder.write("Vera.dsf", "old");
    const CountedAsks asks(2);
    const auto save = [&folder] {
        base::FileSet set(folder.path());
        set.write("Vera.dsf", "new");
        set.write("Vera.dhdm", "new");
        set.commit();
    };
    EXPECT_THROW(save(), base::Cancelled);
    EXPECT_EQ(folder.contents(), (std::map<std::string, std::string>{{"Vera.dsf", "old"}}));
}

} // namespace

TEST(Cancellation, ends_the_wait_for_bytes_that_may_never_come_also_beside_another_end)
{
    const ScratchFolder folder;
    const std::filesystem::path pipe = folder.path() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    base::InputFile file(pipe);
    const int writer = open(pipe.c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_GE(writer, 0);
    const auto before = base::SetCancellationSource([] { return true; });
    const base::Cancelled ofAnotherThread;
    char byte = 0;
    EXPECT_THROW(file.read(&byte, 1), base::Cancelled);
    base::SetCancellationSource(before);
    close(writer);
}
