// Writing the decomposition of a net (struct_subnet.h) as the structural analysis file.
#pragma once

#include <cstdint>
#include <cstdio>

#include "structure/struct_vars.h"

namespace siphons {

/// Writes the structural analysis file; with subnet_bit or ecs_bit set also a summary to standard output.
void subnet_output(std::FILE* stream);

/// Writes a sparse row, or a set (struct_subnet.h), as one line.
void write_sparse(std::FILE* stream, const sp_entry* row);
void write_set(std::FILE* stream, const uint8_t* set);

/// How many bits the marking of a place with this bound needs, at least 1.
int32_t BitsOfBound(int32_t bound);

/// How many 16-bit words that many bits take.
int32_t WordsOfBits(int32_t bits);

}  // namespace siphons
