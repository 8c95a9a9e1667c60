#include "net/keywords.h"

#include "net/definition_sections.h"
#include "net/place_sections.h"
#include "net/transition_sections.h"

namespace siphons {

std::array<Keyword, nkeywords> keylist{{
    {"NET_TYPE:", f_nettype, 0},
    {"DESCRIPTION:", f_descr, 0},
    {"PLACES:", f_nplaces, 0},
    {"TRANSITIONS:", f_ntrans, 0},
    {"DEFINITION_PARAMETERS:", f_ndelaypar, 0},
    {"REWARD_MEASURES:", f_nrewards, 0},
    {"DELAYPAR_DEF", f_delaypar_def, 0},
    {"DEFINITION_PARAMETER", f_delaypar, 0},
    {"PLACE", f_place, 0},
    {"TRANSITION", f_trans, 0},
    {"WEIGHT", f_delay, 0},
    {"EXP_DELAY", f_delay, 0},
    {"DET_DELAY", f_delay, 0},
    {"GEN_DELAY", f_delay, 0},
    {"FUNCTION", f_md_enable, 0},
    {"CARDINALITY", f_md_arc_mult, 0},
    {"MEASURE", f_reward, 0},
}};

}  // namespace siphons
