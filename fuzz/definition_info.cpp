// A net description, a line "====" and a definition info: the structural tables, the subnets and the
// structural analysis file are built from any bytes. Bytes without such a line are a definition info for a
// small net with every kind of arc.
#include <iostream>
#include <sstream>
#include <string_view>

#include "fuzz/harness.h"
#include "matrix/matrix.h"
#include "net/load_net.h"
#include "structure/definition_info.h"
#include "structure/sparse.h"
#include "structure/struct_IO.h"
#include "structure/struct_subnet.h"
#include "structure/struct_vars.h"
#include "structure/structure_file.h"

namespace {

using namespace siphons;

constexpr std::string_view kSeparator = "====\n";
constexpr const char* kNet =
    "PLACES: 3\nTRANSITIONS: 3\nPLACE a 1\nPLACE b 0\nPLACE c 2\n"
    "TRANSITION t 1.0 SS EXP RE 1 0 0 0 0 0 0 0 INPARCS 1 1 a 0 OUTPARCS 2 <MD> b 0 1 c 0 INHARCS 0\n"
    "TRANSITION u 1.0 SS IM RE 1 0 0 0 0 0 0 0 INPARCS 1 <MD> b 0 OUTPARCS 1 1 a 0 INHARCS 1 <MD> c 0\n"
    "TRANSITION v 1.0 IS IM RE 2 0 0 0 0 0 0 0 INPARCS 1 2 c 0 OUTPARCS 1 1 a 0 INHARCS 0\n";

/// The tables as they are before a process has read anything. Their blocks are released with all others.
void ResetTables() {
  places = nullptr;
  transitions = nullptr;
  i_matrix = o_matrix = h_matrix = c_matrix = nullptr;
  r_par = nullptr;
  md_arcs = nullptr;
  no_places = no_trans = no_timed_trans = no_md_arcs = no_subnets = 0;
  subnets = nullptr;
  model = nullptr;
}

void BuildAll(const std::string& description, const std::string& info) {
  std::stringbuf buffer(description);
  std::cin.rdbuf(&buffer);
  std::cin.clear();
  const OwnedNet net(load_net(nullptr, ThrowFatal, false));
  model = net.get();  // cppcheck-suppress danglingLifetime; ResetTables takes it back
  config_net(*model);
  std::istringstream stream(info);
  read_info(stream);
  c_matrix = sparse_function(o_matrix, i_matrix, no_trans, minus);
  if (no_places > 0) {
    for (const sp_matrix rows : {c_matrix, i_matrix, o_matrix}) const OwnedMatrix dense(conv_matrix(rows));
  }
  subnet_bit = ecs_bit = 1;
  calc_subnets();
  subnet_output(stdout);
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(data, data + size);
  const size_t at = text.find(kSeparator);
  const bool hasNet = at != std::string::npos;
  std::streambuf* const input = std::cin.rdbuf();
  try {
    const CapturedOutput file;
    BuildAll(hasNet ? text.substr(0, at) : kNet, hasNet ? text.substr(at + kSeparator.size()) : text);
  } catch (const FatalReport&) {
  } catch (const ProcessEnd&) {
  }
  std::cin.rdbuf(input);
  ResetTables();
  ReleaseBlocks();
  return 0;
}
