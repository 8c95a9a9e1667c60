// Files that are written whole or left empty.
#include <gtest/gtest.h>

#include <csignal>

#include "base/output_file.h"
#include "tests/files.h"

namespace siphons {
namespace {

TEST(OutputFile, AnInterruptWaitsUntilTheFileIsWhole) {
  const TemporaryDirectory directory;
  const fs::path path = directory.path() / "file";
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    WriteFile(path, "old");
    const auto run = [&path, signal] {
      WriteWholeFile(path.c_str(), [signal](std::FILE* file) {
        std::raise(signal);
        std::fputs("whole", file);
      });
    };
    EXPECT_EXIT(run(), testing::KilledBySignal(signal), "");
    EXPECT_EQ(ReadFile(path), "whole");
  }
}

TEST(OutputFile, WhatCannotBeWrittenIsTold) {
  const TemporaryDirectory directory;
  const auto write = [](std::FILE* file) { std::fputs("text", file); };
  EXPECT_TRUE(WriteWholeFile((directory.path() / "file").c_str(), write));
  EXPECT_FALSE(WriteWholeFile("/dev/full", write));
  EXPECT_FALSE(WriteWholeFile(directory.path().c_str(), write));
}

}  // namespace
}  // namespace siphons
