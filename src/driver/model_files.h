// Where the files of a net lie, for every program that reads nets: the model directory, the path of a net in
// it, and its definition info file. Each function ends the process when the run cannot go on.
#pragma once

#include <span>

namespace siphons {

inline constexpr size_t kPathBuffer = 1000;

/// Sets modeldir from MODELDIR; without it ends the process with status 1 after "'MODELDIR' not set\n" on
/// standard error.
void FindModelDirectory();

/// Writes "<MODELDIR>/<net>" into the buffer and the net's name into model_name. FindModelDirectory has run.
void FormNetPath(std::span<char, kPathBuffer> path, const char* net);

/// Opens "<net path>.DEFINFO" as inf_file; ends the process with status 1 after "ERROR: could not open %s for
/// reading\n" on standard output when it cannot. To be called before the net is read: this is then the first
/// complaint.
void OpenDefinitionInfo(const char* netPath);

/// Reads what OpenDefinitionInfo opened into the structural tables. Ends the process as that does when the
/// system cannot read on, and as read_info does.
void ReadDefinitionInfo(const char* netPath);

}  // namespace siphons
