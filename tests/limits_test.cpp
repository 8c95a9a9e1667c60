// The program at the edge of what the system gives it: memory, disk, paths, and a user who interrupts it.
#include "tests/program.h"

namespace siphons {
namespace {

/// A net that can fill each of n cells in two ways: 2^n siphons from 3^n rays, 25 MB for n = 10.
std::string ChoicesNet(int n) {
  std::string places = "PLACE q 1\n", transitions;
  const auto transition = [&transitions](const std::string& name, const std::string& arcs) {
    transitions += "TRANSITION " + name + " 1 SS EXP RS 0 0 0 0 0 0 0 0\n" + arcs + " INHARCS 0\n";
  };
  for (int i = 0; i < n; ++i) {
    const std::string cell = "a" + std::to_string(i), cells[] = {cell + "x", cell + "y"};
    transition("use" + cell, "INPARCS 2 1 " + cells[0] + " 0 1 " + cells[1] + " 0 OUTPARCS 1 1 q 0");
    for (const std::string& way : cells) {
      places += "PLACE " + way + " 0\n";
      transition("fill" + way, "INPARCS 1 1 q 0 OUTPARCS 1 1 " + way + " 0");
    }
  }
  return "PLACES: " + std::to_string(2 * n + 1) + "\nTRANSITIONS: " + std::to_string(3 * n) +
         "\nDEFINITION_PARAMETERS: 0\nREWARD_MEASURES: 0\n" + places + transitions;
}

void WriteNet(const fs::path& model, const std::string& text, const std::string& net = "net") {
  WriteFile(model / (net + ".PD"), text);
  WriteFile(model / (net + ".DEFINFO"), kNoInfo);
}

/// Runs with more and more memory until three runs gave the whole answer. Ends of a run that gave none: it
/// says that memory is short, or the system's loader ends it before it begins.
std::vector<Outcome> WithLittleMemory(
    const fs::path& model, const char* program, const std::string& arguments, const fs::path& answer,
    int kilobytes, int step, const std::function<bool(const Outcome&, const std::string&)>& isFailed) {
  RunProgram(ModelDirectory(model), program, arguments);
  const std::string whole = MaskedReport(answer).value_or("");
  EXPECT_GT(whole.size(), 100u);
  std::vector<Outcome> outcomes;
  int complete = 0;
  for (; complete < 3 && kilobytes < 100000; kilobytes += step) {
    SCOPED_TRACE(arguments + " " + std::to_string(kilobytes));
    fs::remove(answer);
    const std::string limit = " prlimit --as=" + std::to_string(int64_t{kilobytes} << 10);
    const Outcome& run = outcomes.emplace_back(RunProgram(ModelDirectory(model) + limit, program, arguments));
    const std::string written = MaskedReport(answer).value_or("");
    if (run.status == 255 || run.status == 127) {
      EXPECT_EQ(written, "");
      EXPECT_TRUE(run.status == 127 || run.err.find("Unable to ") != std::string::npos) << run.err;
    } else if (!isFailed(run, written)) {
      EXPECT_TRUE(run.status == 0 || run.status == 3) << run.status << run.err;
      EXPECT_TRUE(written == whole) << written.size() << " of " << whole.size() << " characters";
      ++complete;
    }
  }
  EXPECT_EQ(complete, 3);
  return outcomes;
}

/// The memory limit from which on netkit starts: below, its libraries end the process in ways of their own.
int KilobytesToStart() {
  const auto starts = [](int kilobytes) {
    const std::string limit = "prlimit --as=" + std::to_string(int64_t{kilobytes} << 10);
    return RunProgram(limit, NETKIT_PROGRAM, "--version").status == 0;
  };
  constexpr int kWide = 1000, kNarrow = 100, kMost = 200'000;
  int kilobytes = 5000;
  while (kilobytes < kMost && !starts(kilobytes)) kilobytes += kWide;
  for (kilobytes -= kWide; kilobytes < kMost && !starts(kilobytes);) kilobytes += kNarrow;
  return kilobytes + kNarrow;
}

TEST(Limits, Memory) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer's shadow needs terabytes of addresses";
#endif
  const TemporaryDirectory model;
  const auto solveFailed = [](const Outcome& run, const std::string& written) {
    const bool told =
        run.out.find("no more memory available!\nError!an error occured\n") != std::string::npos;
    EXPECT_EQ(told, written.ends_with("s\n There are no siphons\n"));
    return told;
  };
  // The last net ends behind a line that takes megabytes to read: a read that fails is not the end of the
  // file.
  std::string longLine = ChoicesNet(4);
  longLine.insert(longLine.rfind("TRANSITION"), "--" + std::string(3000000, '-') + "\n");
  const std::pair<std::string, int> nets[] = {{ChoicesNet(4), 64}, {ChoicesNet(10), 5000}, {longLine, 500}};
  std::vector<Outcome> outcomes;
  for (const auto& [net, step] : nets) {
    WriteNet(model.path(), net);
    const std::vector<Outcome> more = WithLittleMemory(model.path(), SIPHONS_PROGRAM, "net",
                                                       model.path() / "net.siphons", 4000, step, solveFailed);
    outcomes.insert(outcomes.end(), more.begin(), more.end());
  }
  ExpectRowsOfThisTest(outcomes);

  WriteNet(model.path(), ChoicesNet(800));
  const fs::path answer = model.path() / "answer";
  const int leastMemory = KilobytesToStart();
  const std::pair<std::string, int> commands[] = {{"structure net", 50}, {"siphons net --max 50", 1000}};
  for (const auto& [command, step] : commands) {
    WithLittleMemory(model.path(), NETKIT_PROGRAM, command + " -o '" + answer.string() + "'", answer,
                     leastMemory, step, [](const Outcome&, const std::string&) { return false; });
  }
}

TEST(Limits, AReportThatCannotBeWrittenIsNotLeft) {
  const TemporaryDirectory model;
  WriteNet(model.path(), ChoicesNet(6));
  const fs::path report = model.path() / "net.siphons";
  const auto expectFailure = [&](const std::string& limit = "") {
    const Outcome outcome = RunProgram(ModelDirectory(model.path()) + limit, SIPHONS_PROGRAM, "net");
    EXPECT_EQ(outcome.out, "ERROR: could not open " + report.string() + " for writing\n");
    EXPECT_EQ(outcome.status, 1);
    return outcome;
  };
  expectFailure(" prlimit --fsize=1000");
  EXPECT_EQ(ReadFile(report), "");
  for (const char* target : {"/dev/full", "no such directory/report"}) {
    fs::remove(report);
    fs::create_symlink(target, report);
    expectFailure();
  }
  fs::remove(report);
  fs::create_directory(report);
  ExpectRowsOfThisTest({expectFailure()});
}

TEST(Limits, ADirectoryIsNoEmptyFile) {
  for (const char* file : {"net.PD", "net.DEFINFO"}) {
    const TemporaryDirectory model;
    WriteNet(model.path(), ChoicesNet(1));
    fs::remove(model.path() / file);
    fs::create_directory(model.path() / file);
    const Outcome outcome = RunNet(model.path());
    EXPECT_EQ(outcome.status, 1) << file;
    EXPECT_NE((outcome.out + outcome.err).find("open "), std::string::npos) << file;
    EXPECT_EQ(ReadFile(model.path() / "net.siphons"), std::nullopt);
  }
}

TEST(Limits, PathsOfTheModelDirectory) {
  const TemporaryDirectory base;
  const auto expectReport = [](const std::string& directory, const std::string& net) {
    fs::create_directories(directory);
    WriteNet(directory, ChoicesNet(2), net);
    EXPECT_EQ(RunProgram("MODELDIR='" + directory + "'", SIPHONS_PROGRAM, "'" + net + "'").status, 0) << net;
    EXPECT_TRUE(fs::exists(directory + "/" + net + ".siphons"));
  };
  const std::string path = base.path().string();
  for (const char* net : {"blank in its name", "Fließband–工場", "%s%n"}) expectReport(path, net);
  expectReport(path + "/Fließ band/", "net");
  // The path of the net description has at most 511 characters.
  const std::string longest = path + "/" + std::string(200, 'd') + "/" + std::string(200, 'd');
  const std::string fits(511 - longest.size() - 4, 'n');
  expectReport(longest, fits);
  const std::string tooLong = fits + "n";
  WriteNet(longest, ChoicesNet(2), tooLong);
  EXPECT_EQ(RunNet(longest, tooLong).err.find("text too long for its buffer of 512 characters: "), 0u);
}

TEST(Limits, AnInterruptedSolveLeavesTheOldReport) {
  const std::string old = "Calculation of Siphons:\nold\n";
  for (const int signal : {SIGINT, SIGTERM}) {
    for (const bool hasOld : {false, true}) {
      const TemporaryDirectory model;
      const fs::path report = model.path() / "net.siphons";
      WriteNet(model.path(), ChoicesNet(12));
      if (hasOld) WriteFile(report, old);
      EXPECT_EQ(SignalAtWork(model.path(), {SIPHONS_PROGRAM, "net"}, signal, Fate::kEndsIt), -signal);
      EXPECT_EQ(ReadFile(report), hasOld ? std::optional(old) : std::nullopt);
    }
  }
}

}  // namespace
}  // namespace siphons
