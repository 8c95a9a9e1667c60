// The subcommands of netkit. Each file adds its own to the command line: its options, its description, and
// what runs when it is called, which leaves the exit status in `status`.
#pragma once

#include <cstdint>

namespace CLI {
class App;
}

namespace siphons {

void AddMinimalSets(CLI::App& app, bool traps, int32_t& status);
void AddCheck(CLI::App& app, int32_t& status);
void AddMonitors(CLI::App& app, int32_t& status);
void AddInfo(CLI::App& app, int32_t& status);
void AddLint(CLI::App& app, int32_t& status);
void AddConvert(CLI::App& app, int32_t& status);
void AddDraw(CLI::App& app, int32_t& status);

/// list, structure and pmf, which show the tables of the report program and read a net with its loader.
void AddTables(CLI::App& app, int32_t& status);

/// completion and manual, which describe all of `app` to a shell and to a reader.
void AddCompletion(CLI::App& app, int32_t& status);
void AddManual(CLI::App& app, int32_t& status);

}  // namespace siphons
