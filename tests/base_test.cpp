// The ground floor: files that are written whole or left empty, texts in bounded buffers, memory of the
// tables.
#include <csignal>

#include "base/bounded_text.h"
#include "base/output_file.h"
#include "net/default_error.h"
#include "net/memory.h"
#include "tests/messages.h"

namespace siphons {
namespace {

TEST(Base, FilesAreWrittenWhole) {
  const TemporaryDirectory directory;
  const fs::path path = directory.path() / "file";
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    WriteFile(path, "old");
    const auto run = [&path, signal] {
      std::signal(signal, SIG_DFL);  // who runs the tests may ignore it
      WriteWholeFile(path.c_str(), [signal](std::FILE* file) {
        std::raise(signal);
        std::fputs("whole", file);
      });
    };
    EXPECT_EQ(InChild(run).status, -signal) << "only once the file is whole";
    EXPECT_EQ(ReadFile(path), "whole");
  }
  const auto write = [](std::FILE* file) { std::fputs("text", file); };
  EXPECT_TRUE(WriteWholeFile(path.c_str(), write));
  EXPECT_FALSE(WriteWholeFile("/dev/full", write));
  EXPECT_FALSE(WriteWholeFile(directory.path().c_str(), write));
}

TEST(Base, TextsFillTheirBuffersAndNoMore) {
  std::array<char, 8> buffer;
  EXPECT_EQ(FormatBounded(buffer, "%s", "abc"), 3u);
  AppendBounded(buffer, "defg");
  EXPECT_STREQ(buffer.data(), "abcdefg");
  const Outcome append = InChild([&buffer] { AppendBounded(buffer, "h"); });
  EXPECT_EQ(append.err, "text too long for its buffer of 8 characters: abcdefg...\n");
  const Outcome format = InChild([&buffer] { FormatBounded(buffer, "%d", 12345678); });
  EXPECT_EQ(format.err, "text too long for its buffer of 8 characters: 1234567...\n");
  EXPECT_EQ(append.status, -SIGABRT);
}

TEST(Base, BlocksAndTheirEnds) {
  EXPECT_EQ(nMalloc(0), nullptr);
  char* block = static_cast<char*>(nRealloc(nullptr, 8));
  EXPECT_EQ(block[7], 0);
  block[7] = 'x';
  block = static_cast<char*>(nRealloc(block, 4000));
  EXPECT_EQ(block[7], 'x');
  EXPECT_EQ(nRealloc(block, 0), nullptr);
  const Outcome tooLarge = InChild([] { TableBytes(0x80000000U, 2); });
  EXPECT_EQ(tooLarge.err, "Unable to malloc 4294967295 bytes\n") << "the greatest size that is named";
  EXPECT_EQ(tooLarge.status, 255);
  EXPECT_EQ(InChild([] { DefaultError("gone", 3); }).status, 3);
}

}  // namespace
}  // namespace siphons
