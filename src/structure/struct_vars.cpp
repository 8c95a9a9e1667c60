#include "structure/struct_vars.h"

namespace siphons {

struct_place* places = nullptr;
int32_t no_places = 0;
struct_trans* transitions = nullptr;
int32_t no_trans = 0;
int32_t no_timed_trans = 0;

sp_matrix i_matrix = nullptr;
sp_matrix o_matrix = nullptr;
sp_matrix h_matrix = nullptr;
sp_matrix c_matrix = nullptr;

rate_par* r_par = nullptr;
md_arc_def* md_arcs = nullptr;
int32_t no_md_arcs = 0;

int32_t pmf_bit = 0;
int32_t subnet_bit = 0;
int32_t ecs_bit = 0;

std::ifstream inf_file;
char model_name[1000] = "";
const char* modeldir = nullptr;
Net* model = nullptr;

}  // namespace siphons
