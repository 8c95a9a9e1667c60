// What netkit's subcommands write: answers as text and as JSON, to standard output or to a file.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "netkit/formats/diagnostics.h"
#include "netkit/model/petri_net.h"
#include "netkit/siphons/minimal_siphons.h"

namespace siphons {

/// Members in the order in which they are set.
using Json = nlohmann::ordered_json;

/// Every JSON answer has it as the member "version"; it changes when a member changes its meaning or goes.
inline constexpr int32_t kAnswerVersion = 1;

/// The tokens that the initial marking puts into the places.
int64_t TokensOf(const PetriNet& net, const PlaceList& set);

/// "MARKING: <tokens> { <names> }", as in the report of `siphons`, but every name as it is.
std::string MarkingLine(const PetriNet& net, const PlaceList& set);

/// Places (names, and ids where the file has them) and tokens of a set.
Json JsonOf(const PetriNet& net, const PlaceList& set);

/// Errors and warnings, each with its place in the file.
Json JsonOf(const Diagnostics& diagnostics);

/// Why an answer is incomplete, or null.
Json ReasonOf(const std::string& reason);

/// The value as one line; what is not UTF-8 in a name is replaced.
std::string JsonLine(const Json& json);

/// Ends the process as WriteAnswer does when the file cannot be opened for writing, which is better known
/// before a long run. What it holds stays.
void TryOutput(const std::string& file);

/// Writes to the file, or to standard output for an empty name, by calling `write` once. Ends the process
/// with status 1 after "ERROR: could not open %s for writing\n" on standard error when that cannot be written
/// whole, which leaves a file empty, or when something else that went to standard output could not.
void WriteAnswer(const std::string& file, const std::function<void(std::FILE*)>& write);
void WriteAnswer(const std::string& file, const std::string& text);

}  // namespace siphons
