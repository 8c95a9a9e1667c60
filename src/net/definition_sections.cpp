// Sections that define things by text: parameters, marking-dependent delays, enabling functions and
// multiplicities, reward measures. The texts are kept as they stand and never interpreted; each ends with
// exactly one ';'.
#include "net/definition_sections.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "base/bounded_text.h"
#include "net/lookups.h"
#include "net/name_index.h"
#include "net/section_text.h"

namespace siphons {

int32_t f_delaypar(Net& net, const char* text, int32_t occurrence) {
  if (net.ndelaypars < 1) return Fault(net, "No DEFINITION_PARAMETERS announced");
  if (occurrence >= net.ndelaypars) return Fault(net, "Definitions-table overflow");
  text = skip_white(text);
  DelayPar& parameter = net.delaypars[occurrence];
  Words<2> words(std::strlen(text));
  const int32_t items =
      std::sscanf(text, "%s %s %lg %lg", words[0], words[1], &parameter.pos.x, &parameter.pos.y);
  if (items < 4) return Fault(net, "Invalid definition parameter");
  StoreText(parameter.name, words[0]);
  net.names->delaypars.Add(parameter.name, occurrence);
  parameter.is_value = std::string_view(words[1]) != "<MD>" ? 1 : 0;
  if (parameter.is_value != 0) std::sscanf(words[1], "%lg", &parameter.value);
  return 0;
}

int32_t f_delaypar_def(Net& net, const char* text, int32_t) {
  // The message names the handler of DEFINITION_PARAMETER; it is known under this text.
  if (net.ndelaypars < 1) return Fault(net, "f_delaypar: no definition parameters defined");
  NamedText definition;
  if (!ReadNamedText(skip_white(text), &definition)) return Fault(net, "Invalid DELAYPAR_DEF definition");
  DelayPar* const parameter = find_delaypar(net, definition.name.c_str());
  if (parameter == nullptr) return 0;
  StoreText(parameter->text, definition.text.c_str());
  parameter->value = 0;
  return 0;
}

int32_t f_delay(Net& net, const char* text, int32_t) {
  if (net.ntrans < 1) return Fault(net, "f_delay: no transitions defined");
  NamedText definition;
  if (!ReadNamedText(skip_white(text), &definition)) return Fault(net, "Invalid DELAY definition");
  NetTransition* const t = find_trans(net, definition.name.c_str());
  if (t == nullptr) return 0;
  if (t->delay_type == kDelayNumber || t->delay_type == kDelayParameter) {
    std::array<char, 128> message;
    FormatBounded(message, "Redefining transition '%s' by '%s'\n", t->name, definition.text.c_str());
    net.error_func(message.data(), 0);
  }
  t->delay_type = t->type == kGeneral ? kDelayPmf : kDelayMarkdep;
  StoreText(t->delay.text, definition.text.c_str());
  return 0;
}

int32_t f_md_enable(Net& net, const char* text, int32_t) {
  if (net.ntrans < 1) return Fault(net, "f_md_enable: no transitions defined");
  NamedText definition;
  if (!ReadNamedText(skip_white(text), &definition)) return Fault(net, "Invalid FUNCTION definition");
  NetTransition* const t = find_trans(net, definition.name.c_str());
  if (t != nullptr) StoreText(t->md_enable, definition.text.c_str());
  return 0;
}

int32_t f_md_arc_mult(Net& net, const char* text, int32_t) {
  text = skip_white(text);
  Words<4> words(std::strlen(text));
  if (std::sscanf(text, "%s %s %s %[^;]", words[0], words[1], words[2], words[3]) != 4) {
    return Fault(net, "Invalid CARDINALITY definition");
  }
  const std::string multiplicity = std::string(words[3]) + ";";
  NetTransition* const t = find_trans(net, words[1]);
  if (t == nullptr) return 0;
  const std::string_view group = words[0];
  NetArc* const arcs = group == "INPARC" ? t->inarcs : group == "OUTPARC" ? t->outarcs : t->inharcs;
  const int32_t count = group == "INPARC" ? t->ninarcs : group == "OUTPARC" ? t->noutarcs : t->ninharcs;
  // The last arc to the place takes the text; without one the section has no effect.
  for (int32_t i = count - 1; i >= 0; --i) {
    NetArc& arc = arcs[i];
    if (std::strcmp(arc.place->name, words[2]) != 0) continue;
    arc.is_value = 0;
    arc.multiplicity = 0;
    StoreText(arc.md_mult, multiplicity.c_str());
    break;
  }
  return 0;
}

int32_t f_reward(Net& net, const char* text, int32_t occurrence) {
  if (net.nrewards < 1) return Fault(net, "No REWARD_MEASURES announced");
  if (occurrence >= net.nrewards) return Fault(net, "Rewards-table overflow");
  NamedText definition;
  if (!ReadNamedText(skip_white(text), &definition)) return Fault(net, "Invalid MEASURE definition");
  StoreText(net.rewards[occurrence].name, definition.name.c_str());
  StoreText(net.rewards[occurrence].def, definition.text.c_str());
  return 0;
}

}  // namespace siphons
