// The siphon report. Place names are format texts: names have always been printed so, and reports must stay
// the same. A strange name can only spoil its own place in the report. The names are formatted before the
// report is opened, so that a name which ends the process leaves an older report as it is.
#include "driver/report.h"

#include <cstdio>
#include <string>
#include <vector>

#include "base/output_file.h"
#include "driver/format_text.h"
#include "structure/struct_vars.h"

namespace siphons {

namespace {

/// The formatted names of the places that are in a siphon; the others stay empty.
std::vector<std::string> FormattedNames(const Report& report) {
  std::vector<std::string> names(static_cast<size_t>(no_places));
  for (size_t p = 0; p < names.size(); ++p) {
    for (int32_t r = 0; r < report.siphonCount; ++r) {
      if (report.siphons->p[r][p] == 0) continue;
      names[p] = FormattedText(places[p].name);
      break;
    }
  }
  return names;
}

void WriteSiphon(std::FILE* file, const std::vector<std::string>& names, const int32_t* members,
                 int32_t marking) {
  std::fprintf(file, "MARKING: %4i ", marking);
  std::fputs("{ ", file);
  for (size_t p = 0; p < names.size(); ++p) {
    if (members[p] == 0) continue;
    std::fwrite(names[p].data(), 1, names[p].size(), file);
    std::fputc(' ', file);
  }
  std::fputs("}\n", file);
}

void WriteText(std::FILE* file, const Report& report, const std::vector<std::string>& names) {
  std::fputs("Calculation of Siphons:\n", file);
  std::fprintf(file, "Time passed with computation: %8.2f s\n", report.seconds);
  if (report.siphonCount == 0) {
    std::fputs(" There are no siphons\n", file);
    return;
  }
  std::fprintf(file, "No. of siphons = %i \n", report.siphonCount);
  for (int32_t r = 0; r < report.siphonCount; ++r) {
    WriteSiphon(file, names, report.siphons->p[r], report.markings->p[r][0]);
  }
}

}  // namespace

bool WriteReport(const char* path, const Report& report) {
  const std::vector<std::string> names = FormattedNames(report);
  return WriteWholeFile(path, [&](std::FILE* file) { WriteText(file, report, names); });
}

}  // namespace siphons
