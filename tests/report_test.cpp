// The report: names as format texts, the time that it tells.
#include <csignal>
#include <cstring>

#include "base/timer.h"
#include "driver/format_text.h"
#include "driver/report.h"
#include "driver/siphondisplay.h"
#include "structure/struct_vars.h"
#include "tests/messages.h"
#include "tests/rows.h"

namespace siphons {
namespace {

TEST(Report, NamesAreFormatTextsWithZeroForEveryArgument) {
  const std::pair<const char*, std::string> names[] = {
      {"a%%b", "a%b"},
      {"x%5dy", "x    0y"},
      {"x%.2fy", "x0.00y"},
      {"x%sy%S%ny%m", "xyySuccess"},
      {"x%*dy%lldy%1$#xy%1$*2$dy%by", "x0y0y0y0y0y"},
      {"x%yz", "x%yz"},
      {"%d%i%o%u%x%X%B", "0000000"},
      {"%e%E%f%F%g%G%a%A", "0.000000e+000.000000E+000.0000000.000000000x0p+00X0P+0"},
      {"%c%C.", std::string("\0\0.", 3)},
      {"%p", "(nil)"},
      {"end%", "end"},
      {"%%99999d", "%99999d"},
      {"%04095d", std::string(4095, '0')}};
  for (const auto& [name, printed] : names) EXPECT_EQ(FormattedText(name), printed) << name;
}

TEST(Report, TellsItsTimeAndLosesNoOlderOneToAStrangeName) {
  const TemporaryDirectory directory;
  const fs::path path = directory.path() / "net.siphons";
  EXPECT_TRUE(WriteReport(path.c_str(), {12.5, 0, nullptr, nullptr}));
  const std::string old = ReadFile(path).value_or("");
  EXPECT_EQ(old,
            "Calculation of Siphons:\nTime passed with computation:    12.50 s\n There are no siphons\n");
  struct_place place{};
  const OwnedMatrix one = MatrixOf({{1}});
  for (const char* name : {"%4096d", "%.4094f", "x%.500000000e", "%2147483647s", "%099999999999d"}) {
    const Outcome run = InChild([&] {
      std::strcpy(place.name, name);
      places = &place, no_places = 1;
      WriteReport(path.c_str(), {0, 1, one.get(), one.get()});
    });
    EXPECT_EQ(run.status, -SIGABRT) << name;
    EXPECT_EQ(run.err.find("text too long for its buffer of 4096 characters: "), 0u) << run.err;
    EXPECT_EQ(ReadFile(path), old);
  }
}

TEST(Report, TheComputationIsTimed) {
  const TemporaryDirectory model;
  WriteFile(model.path() / "net.PD",
            "PLACES: 1\nPLACE a\nTRANSITIONS: 1\nTRANSITION t 1 SS EXP RS 0 0 1 2 3 4 5 6\nINPARCS 1 1 a 0 "
            "OUTPARCS 1 1 a 0 INHARCS 0\n");
  WriteFile(model.path() / "net.DEFINFO", kNoInfo);
  const Outcome run = InChild([&model] {
    setenv("MODELDIR", model.path().c_str(), 1);
    const char* const arguments[] = {"siphons", "net"};
    const int32_t status = RunSiphons(2, arguments);
    std::puts(timer[kComputationTimer].running == 0 && time_passed(kComputationTimer) > 0 ? "timed"
                                                                                          : "not timed");
    _exit(status);
  });
  EXPECT_EQ(run.out, "timed\n");
  EXPECT_EQ(run.status, 0);
}

}  // namespace
}  // namespace siphons
