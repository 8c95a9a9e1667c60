// The structural analysis file: the decomposed net as plain text for a later analysis, and a readable summary
// of it on standard output while the switches are set. Numbers are separated by blanks, and every line of
// numbers but the plain counts ends with one.
#include "structure/structure_file.h"

#include <cmath>
#include <cstdio>

#include "base/arithmetic.h"
#include "structure/struct_subnet.h"

namespace siphons {

namespace {

/// The number that a kind has in the file, which is not that of the table.
int32_t FileKind(StructuralKind kind) {
  switch (kind) {
    case kKindExponential:
      return 0;
    case kKindDeterministic:
      return 1;
    case kKindGeneral:
      return 2;
    case kKindImmediate:
      break;
  }
  return 3;
}

/// One line per place, then the 16-bit words that all their markings need.
void WritePlaces(std::FILE* stream, const subnet_rec& subnet) {
  std::fprintf(stream, "%d\n", subnet.nplaces);
  int32_t bits = 0;
  for (int32_t i = 0; i < subnet.nplaces; ++i) {
    const int32_t number = subnet.place_list[i];
    const struct_place& place = places[number];
    std::fprintf(stream, "%s %d ", place.name, number);
    std::fprintf(stream, "%d %d ", place.init_mark, place.bound);
    std::fprintf(stream, "%d\n", BitsOfBound(place.bound));
    bits += BitsOfBound(place.bound);
  }
  std::fprintf(stream, "%d\n", WordsOfBits(bits));
}

void WriteTimed(std::FILE* stream, const subnet_rec& subnet) {
  std::fprintf(stream, "%d\n", subnet.ntrans);
  for (int32_t j = 0; j < subnet.ntrans; ++j) {
    const struct_trans& t = transitions[subnet.trans[j]];
    std::fprintf(stream, "%s %d %d ", t.name, t.index, FileKind(t.kind));
    std::fprintf(stream, "%d %d ", t.inf_server, t.md_delay);
    std::fprintf(stream, "%22.16e\n", t.delay);
    write_sparse(stream, subnet.i_rows[j]);
    write_sparse(stream, subnet.h_rows[j]);
    write_sparse(stream, subnet.c_rows[j]);
  }
}

void WriteImmediate(std::FILE* stream, const subnet_rec& subnet) {
  std::fprintf(stream, "%d\n", subnet.ntrans);
  for (int32_t j = 0; j < subnet.ntrans; ++j) {
    const struct_trans& t = transitions[subnet.trans[j]];
    std::fprintf(stream, "%s %f", t.name, t.delay);
    std::fprintf(stream, " %d %d\n", t.dep1_id, t.dep2_id);
    write_sparse(stream, subnet.i_rows[j]);
    write_sparse(stream, subnet.h_rows[j]);
    write_sparse(stream, subnet.c_rows[j]);
    write_set(stream, subnet.tsets_b != nullptr ? subnet.tsets_b[j] : nullptr);
    write_set(stream, subnet.tsets_a != nullptr ? subnet.tsets_a[j] : nullptr);
  }
}

void WriteConflictSets(std::FILE* stream, const subnet_rec& subnet) {
  std::fprintf(stream, "%d\n", subnet.necs);
  for (const ecs_rec* ecs = subnet.ecs; ecs != nullptr; ecs = ecs->next) write_set(stream, ecs->set);
}

// --- the summary

void SumUpTransitions(const subnet_rec& subnet) {
  for (int32_t j = 0; j < subnet.ntrans; ++j) std::printf("%s  ", transitions[subnet.trans[j]].name);
}

void SumUpPlaces(const subnet_rec& subnet) {
  for (int32_t i = 0; i < subnet.nplaces; ++i) std::printf("%s  ", places[subnet.place_list[i]].name);
}

void SumUpTimed() {
  std::printf("\nThere are %d timed transition(s):\n", subnets->ntrans);
  SumUpTransitions(*subnets);
  std::printf("\n\nThere are %d independent place(s):\n", subnets->nplaces);
  SumUpPlaces(*subnets);
  std::printf("\n\nThe net contains %d Subnet(s).\n", no_subnets);
}

void SumUpImmediate(const subnet_rec& subnet) {
  std::printf("\n===> subnet %d:\n", subnet.number - 1);
  std::printf("This subnet contains %d transition(s):\n", subnet.ntrans);
  SumUpTransitions(subnet);
  std::printf("\nThis subnet contains %d place(s):\n", subnet.nplaces);
  SumUpPlaces(subnet);
  std::puts("");
}

void SumUpConflictSets(const subnet_rec& subnet) {
  std::printf("This subnet contains %d ecs:\n", subnet.necs);
  int32_t position = 0;
  for (const ecs_rec* ecs = subnet.ecs; ecs != nullptr; ecs = ecs->next) {
    const int32_t count = ecs->set != nullptr ? ecs->set[0] : 0;
    const auto member = [&](int32_t i) -> const struct_trans& {
      return transitions[subnet.trans[ecs->set[1 + i]]];
    };
    std::printf("ecs %d (priority %d): ", position++, count > 0 ? member(0).priority : 0);
    for (int32_t i = 0; i < count; ++i) std::printf("%s ", member(i).name);
    std::puts("");
  }
}

}  // namespace

void subnet_output(std::FILE* stream) {
  std::fputs("structural analysis file\n", stream);
  std::fprintf(stream, "%d %d\n", no_trans, no_places);
  WriteTimed(stream, *subnets);
  WritePlaces(stream, *subnets);
  std::fprintf(stream, "%d\n", no_subnets);
  if (subnet_bit != 0) SumUpTimed();
  for (const subnet_rec* subnet = subnets->next; subnet != nullptr; subnet = subnet->next) {
    WriteImmediate(stream, *subnet);
    WritePlaces(stream, *subnet);
    WriteConflictSets(stream, *subnet);
    if (subnet_bit != 0) SumUpImmediate(*subnet);
    if (ecs_bit != 0) SumUpConflictSets(*subnet);
  }
}

void write_sparse(std::FILE* stream, const sp_entry* row) {
  int32_t count = 0;
  for (const sp_entry* element = row; element != nullptr; element = element->next) ++count;
  std::fprintf(stream, "%d ", count);
  for (; row != nullptr; row = row->next) {
    std::fprintf(stream, "%d %d ", row->index, row->value);
    std::fprintf(stream, "%d %d ", row->md_func, row->mark);
  }
  std::fputs("\n", stream);
}

void write_set(std::FILE* stream, const uint8_t* set) {
  const int32_t count = set != nullptr ? set[0] : 0;
  std::fprintf(stream, "%d ", count);
  for (int32_t i = 1; i <= count; ++i) std::fprintf(stream, "%d ", set[i]);
  std::fputs("\n", stream);
}

int32_t BitsOfBound(int32_t bound) {
  constexpr double kLn2 = 0.6931471805599453;
  return bound == 0 ? 1 : TruncateToInt32(std::ceil(std::log(bound + 1.0) / kLn2));
}

int32_t WordsOfBits(int32_t bits) {
  return TruncateToInt32(std::ceil(bits * 0.0625));
}

}  // namespace siphons
