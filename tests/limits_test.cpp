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

TEST(Limits, Memory) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer's shadow needs terabytes of addresses";
#endif
  const TemporaryDirectory model;
  const fs::path report = model.path() / "net.siphons";
  const std::string failed =
      "Calculation of Siphons:\nTime passed with computation: @TIME@ s\n There are no siphons\n";
  std::string whole;
  int complete = 0;
  std::vector<Outcome> outcomes;
  const auto run = [&](int kilobytes) {
    SCOPED_TRACE(kilobytes);
    fs::remove(report);
    const std::string limit = " prlimit --as=" + std::to_string(int64_t{kilobytes} << 10);
    const Outcome outcome = RunProgram(ModelDirectory(model.path()) + limit, SIPHONS_PROGRAM, "net");
    const std::string written = MaskedReport(report).value_or("");
    const auto tells = [](const std::string& text, const char* message) {
      return text.find(message) != std::string::npos;
    };
    if (outcome.status != 0) {
      EXPECT_EQ(written, "");
      EXPECT_TRUE((outcome.status == 255 && tells(outcome.err, "Unable to ")) ||
                  outcome.status == 127)  // the loader's own end
          << outcome.status << outcome.err;
    } else if (tells(outcome.out, "no more memory available!\nError!an error occured\n")) {
      EXPECT_EQ(written, failed);
    } else {
      EXPECT_EQ(outcome.out, "");
      EXPECT_EQ(written, whole);
      ++complete;
    }
    return outcome;
  };
  // The last net ends behind a line that takes megabytes to read: a read that fails is not the end of the
  // file.
  std::string longLine = ChoicesNet(4);
  longLine.insert(longLine.rfind("TRANSITION"), "--" + std::string(3000000, '-') + "\n");
  const struct {
    std::string net;
    int step;
  } nets[] = {{ChoicesNet(4), 64}, {ChoicesNet(10), 5000}, {longLine, 500}};
  for (const auto& [net, step] : nets) {
    WriteNet(model.path(), net);
    RunNet(model.path());
    whole = MaskedReport(report).value_or("");
    ASSERT_NE(whole, failed);
    complete = 0;
    for (int kilobytes = 4000; complete < 3 && kilobytes < 100000; kilobytes += step) {
      outcomes.push_back(run(kilobytes));
    }
    EXPECT_EQ(complete, 3);
  }
  ExpectRowsOfThisTest(outcomes);
}

TEST(Limits, AReportThatCannotBeWrittenIsNotLeft) {
  const TemporaryDirectory model;
  WriteNet(model.path(), ChoicesNet(1));
  const fs::path report = model.path() / "net.siphons";
  const std::string message = "ERROR: could not open " + report.string() + " for writing\n";
  const auto expectFailure = [&] {
    const Outcome outcome = RunNet(model.path());
    EXPECT_EQ(outcome.out, message);
    EXPECT_EQ(outcome.status, 1);
    return outcome;
  };
  fs::create_symlink("/dev/full", report);
  const Outcome full = expectFailure();
  fs::remove(report);
  fs::create_symlink("no such directory/report", report);
  expectFailure();
  fs::remove(report);
  fs::create_directory(report);
  expectFailure();
  ExpectRowsOfThisTest({full});
}

TEST(Limits, MemoryOfNetkit) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer's shadow needs terabytes of addresses";
#endif
  const TemporaryDirectory model;
  WriteNet(model.path(), ChoicesNet(800));
  const fs::path file = model.path() / "answer";
  const struct {
    std::string command;
    int step;
  } runs[] = {{"structure net", 50}, {"siphons net --max 50", 1000}};
  for (const auto& [command, step] : runs) {
    const std::string arguments = command + " -o '" + file.string() + "'";
    RunProgram(ModelDirectory(model.path()), NETKIT_PROGRAM, arguments);
    const std::string whole = ReadFile(file).value_or("");
    ASSERT_GT(whole.size(), 10000u);
    int complete = 0;
    for (int kilobytes = 5000; complete < 3 && kilobytes < 100000; kilobytes += step) {
      SCOPED_TRACE(command + " " + std::to_string(kilobytes));
      fs::remove(file);
      const std::string limit = " prlimit --as=" + std::to_string(int64_t{kilobytes} << 10);
      const Outcome outcome = RunProgram(ModelDirectory(model.path()) + limit, NETKIT_PROGRAM, arguments);
      const std::string written = ReadFile(file).value_or("");
      if (outcome.status == 0 || outcome.status == 3) {
        EXPECT_TRUE(written == whole) << written.size() << " of " << whole.size() << " characters";
        ++complete;
      } else {
        EXPECT_EQ(written, "");
        EXPECT_TRUE((outcome.status == 255 && outcome.err.starts_with("Unable to malloc ")) ||
                    outcome.status == 127)
            << outcome.status << outcome.err;
      }
    }
    EXPECT_EQ(complete, 3);
  }
}

TEST(Limits, AFileThatGrowsTooLargeIsEmptied) {
  const TemporaryDirectory model;
  std::string net = ChoicesNet(6);
  net.replace(net.find("EXP"), 3, "GEN");
  WriteNet(model.path(), net + "GEN_DELAY usea0 " + std::string(2000, '1') + "\n");
  const auto expectFailure = [&](const char* file, const char* program, const std::string& arguments) {
    const fs::path path = model.path() / file;
    EXPECT_EQ(RunProgram(ModelDirectory(model.path()), program, arguments).status, 0);
    EXPECT_GT(ReadFile(path).value_or("").size(), 1500u);
    const Outcome outcome =
        RunProgram(ModelDirectory(model.path()) + " prlimit --fsize=1000", program, arguments);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ((outcome.out + outcome.err).find("ERROR: "), 0u);
    EXPECT_EQ(ReadFile(path), "") << path;
  };
  expectFailure("net.siphons", SIPHONS_PROGRAM, "net");
  expectFailure("net.pmf", NETKIT_PROGRAM, "pmf net");
  expectFailure("answer", NETKIT_PROGRAM, "structure net -o '" + (model.path() / "answer").string() + "'");
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
    WriteNet(directory, ChoicesNet(2), net);
    EXPECT_EQ(RunProgram("MODELDIR='" + directory + "'", SIPHONS_PROGRAM, "'" + net + "'").status, 0) << net;
    EXPECT_NE(ReadFile(directory + "/" + net + ".siphons").value_or("").find("siphons = 4 "),
              std::string::npos);
  };
  const std::string path = base.path().string();
  expectReport(path + "/", "slash");
  expectReport(path, "blank in its name");
  expectReport(path, "Fließband–工場");
  expectReport(path, "%s%n");
  fs::create_directory(path + "/Fließ band");
  expectReport(path + "/Fließ band/", "net");
  // The path of the net description has at most 511 characters.
  std::string longest = path;
  while (longest.size() < 400) longest += "/" + std::string(100, 'd');
  fs::create_directories(longest);
  const std::string fits(511 - longest.size() - 4, 'n');
  expectReport(longest, fits);
  WriteNet(longest, ChoicesNet(2), fits + "n");
  const Outcome tooLong = RunNet(longest, fits + "n");
  EXPECT_EQ(tooLong.status, -SIGABRT);
  EXPECT_EQ(tooLong.err.find("text too long for its buffer of 512 characters: "), 0u);
}

TEST(Limits, AnInterruptedSolveLeavesTheOldReport) {
  const std::string old = "Calculation of Siphons:\nold\n";
  for (const int signal : {SIGINT, SIGTERM}) {
    for (const bool hasOld : {false, true}) {
      const TemporaryDirectory model;
      const fs::path report = model.path() / "net.siphons";
      WriteNet(model.path(), ChoicesNet(12));
      if (hasOld) WriteFile(report, old);
      EXPECT_EQ(SignalAtWork(model.path(), {SIPHONS_PROGRAM, "net"}, signal), -signal);
      EXPECT_EQ(ReadFile(report), hasOld ? std::optional(old) : std::nullopt);
    }
  }
}

}  // namespace
}  // namespace siphons
