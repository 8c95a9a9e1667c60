// Gathers the procedures on the rows of a matrix as a whole: those that remove rows and those that order
// them.
//
// Each elimination takes the address of the caller's matrix and replaces it by a new one that holds the
// surviving rows in their order; the old matrix is released, also when nothing was removed.
#pragma once

#include "matrix/equal_rows.h"
#include "matrix/minimal_rows.h"
#include "matrix/row_elimination.h"
#include "matrix/row_sorting.h"
