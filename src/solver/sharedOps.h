// Gathers the operations that the double description iteration is made of, on the state of sharedVars.h.
#pragma once

#include "solver/bit_rows.h"
#include "solver/evaluation.h"
#include "solver/new_rays.h"
#include "solver/ray_order.h"
