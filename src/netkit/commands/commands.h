// The subcommands of netkit. Each file adds its own to the command line: its options, its description, and
// what runs when it is called.
#pragma once

#include "netkit/commands/command_line.h"

namespace siphons {

void AddMinimalSets(const Command& app, bool traps);
void AddCheck(const Command& app);
void AddMonitors(const Command& app);
void AddInfo(const Command& app);
void AddLint(const Command& app);
void AddConvert(const Command& app);
void AddDraw(const Command& app);

/// list, structure and pmf, which show the tables of the report program and read a net with its loader.
void AddTables(const Command& app);

/// completion and manual, which describe all of `app` to a shell and to a reader.
void AddCompletion(const Command& app);
void AddManual(const Command& app);

}  // namespace siphons
