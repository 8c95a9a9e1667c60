// TRANSITION sections: a head of 13 words, or of 16 in its long form, then the groups of input, output and
// inhibitor arcs. The report program tells the two forms apart by trying to read numbers; here the word
// INPARCS decides, and every word must be what its place asks for, so that both read the same.
#include <cctype>
#include <limits>
#include <utility>

#include "netkit/formats/near_names.h"
#include "netkit/formats/pd_net_builder.h"
#include "netkit/formats/plain_numbers.h"

namespace siphons {

namespace {

constexpr int64_t kGreatest = std::numeric_limits<int32_t>::max();
constexpr std::string_view kMarkingDependent = "<MD>";
constexpr std::string_view kInputs = "INPARCS", kOutputs = "OUTPARCS", kInhibitors = "INHARCS";

/// The keyword of a group of arcs that the word is or was probably meant for; empty for other words.
std::string_view NearestGroup(std::string_view word) {
  if (word.empty() || std::isalpha(static_cast<unsigned char>(word[0])) == 0) return {};
  if (word == kInputs || word == kOutputs || word == kInhibitors) return word;
  return NearestName(word, {kInputs, kOutputs, kInhibitors});
}

/// Whether the next words can be an arc without path points.
bool IsWholeArc(PdScanner words) {
  const std::string_view weight = words.Next().text, place = words.Next().text, points = words.Next().text;
  return IsPlainDecimal(weight) && !place.empty() && IsPlainDecimal(points);
}

}  // namespace

bool PdNetBuilder::TakeTransition(SourcePosition where, PdScanner& words) {
  Declare(transitions_, net_.transitions.size(), where, words.Peek());
  Transition& transition = net_.transitions.emplace_back();
  transition.name = words.Peek().text;
  transition.where = words.Peek().where;
  const bool whole = TakeHead(words, transition) && TakeArcs(words, kInputs, kOutputs, transition.inputs) &&
                     TakeArcs(words, kOutputs, kInhibitors, transition.outputs) &&
                     TakeArcs(words, kInhibitors, {}, transition.inhibitors);
  arcFaults_.emplace_back().inArcs = !whole;
  return whole;
}

bool PdNetBuilder::TakeHead(PdScanner& words, Transition& transition) {
  constexpr size_t kShort = 13, kLong = 16, kPolicyWord = 4;
  std::vector<PdWord> head;
  while (head.size() < kLong + 1 && !words.AtEnd()) {
    if (head.size() > kPolicyWord && !NearestGroup(words.Peek().text).empty()) break;
    head.push_back(words.Next());
  }
  if (head.size() != kShort && head.size() != kLong) {
    Error(transition.where, "the head of the transition has " +
                                (head.size() > kLong ? "more than 16" : std::to_string(head.size())) +
                                " words before INPARCS; write name, delay, server, type, policy, priority, "
                                "orientation and six coordinates");
    return false;
  }
  constexpr size_t kDelayWord = 1, kServerWord = 2, kTypeWord = 3;
  enum : size_t { kPriority = 5, kOrientation, kAuxiliary };
  const std::optional<size_t> server = OneOf(head[kServerWord], "server", {"SS", "IS"});
  const std::optional<size_t> type = OneOf(head[kTypeWord], "type", {"IMM", "EXP", "DET", "GEN"});
  const std::optional<size_t> policy = OneOf(head[kPolicyWord], "policy", {"RS", "RA", "RE"});
  transition.infiniteServer = server == 1;
  transition.kind = static_cast<TransitionKind>(type.value_or(1));
  transition.policy = static_cast<MemoryPolicy>(policy.value_or(0));
  const bool delay = TakeDelay(head[kDelayWord], transition);
  const auto priority = Integer(head[kPriority], "priority", 0, kGreatest);
  const auto orientation = Integer(head[kOrientation], "orientation", 0, 3);
  transition.priority = static_cast<int32_t>(priority.value_or(0));
  transition.orientation = static_cast<Orientation>(orientation.value_or(0));
  bool good = server && type && policy && delay && priority && orientation;

  size_t next = kAuxiliary;
  if (head.size() == kLong) {
    const auto count = Integer(head[next], "auxiliary count", 0, std::numeric_limits<int16_t>::max());
    const auto flag = Integer(head[next + 1], "auxiliary flag", 0, kGreatest);
    const auto value = Real(head[next + 2], "auxiliary value");
    good = good && count && flag && value;
    transition.auxiliary = {static_cast<int16_t>(count.value_or(1)), static_cast<int32_t>(flag.value_or(0)),
                            value.value_or(1)};
    next += 3;
  }
  for (std::optional<Point>* point :
       {&transition.position, &transition.labelPosition, &transition.delayPosition}) {
    const auto x = Real(head[next], "coordinate");
    const auto y = Real(head[next + 1], "coordinate");
    good = good && x && y;
    *point = {x.value_or(0), y.value_or(0)};
    next += 2;
  }
  return good || words.Peek().text == kInputs;
}

/// A number starts with a digit; the report program takes one with a sign or a leading point for the name of
/// a parameter.
bool PdNetBuilder::TakeDelay(const PdWord& word, Transition& transition) {
  TransitionDelay& delay = transition.delay;
  if (transition.kind == TransitionKind::kGeneral) {
    delay.kind = TransitionDelay::Kind::kDistribution;  // a GEN_DELAY gives it, whatever stands here
  } else if (std::isdigit(static_cast<unsigned char>(word.text[0])) != 0) {
    const std::optional<double> value = Real(word, "delay");
    delay.value = value.value_or(1);
    return value.has_value();
  } else if (word.text == kMarkingDependent) {
    delay.kind = TransitionDelay::Kind::kMarkingDependent;
  } else if (PlainReal(word.text)) {
    Error(word.where, "the delay " + Quoted(word.text) +
                          " does not start with a digit, so that the report program "
                          "takes it for a parameter; write a number such as 0.5");
    return false;
  } else {
    delay.kind = TransitionDelay::Kind::kParameter;
    delay.text = word.text;
    return NumberOf(parameters_, word).has_value();
  }
  return true;
}

/// Takes a group of arcs. `next` is the keyword of the group behind it, if any.
bool PdNetBuilder::TakeArcs(PdScanner& words, std::string_view keyword, std::string_view next,
                            std::vector<Arc>& arcs) {
  const PdWord word = words.Peek();
  if (word.text != keyword && NearestGroup(word.text) == keyword) {
    Error(word.where, Quoted(word.text) + " begins no group of arcs; did you mean " + Quoted(keyword) + "?");
  } else if (word.text != keyword) {
    Error(word.where, (word.text.empty() ? "the section ends here" : Quoted(word.text) + " stands here") +
                          " in place of the group " + std::string(keyword) +
                          "; write the groups INPARCS, OUTPARCS and INHARCS in this order");
    return false;
  }
  words.Next();
  const PdWord number = words.Next();
  if (!Present(number, "the number of arcs")) return false;
  const std::optional<int64_t> announced = Integer(number, "number of arcs", 0, kGreatest);
  if (!announced) return false;
  ++groups_;
  // An arc begins with a number or <MD>: whatever else stands there, the group is over.
  const auto arcFollows = [&words] {
    const PdWord ahead = words.Peek();
    return !ahead.text.empty() && NearestGroup(ahead.text).empty() &&
           !(ahead.startsLine && NearestKeyword(ahead.text));
  };
  int64_t given = 0;
  for (; arcFollows(); ++given) {
    // Behind the last group anything may be left over; behind the others only arcs stand before the next.
    if (given >= *announced && next.empty() && !IsWholeArc(words)) break;
    if (!TakeArc(words, arcs)) return false;
  }
  if (given == *announced) return true;
  Error(number.where, std::string(keyword) + " announces " + std::to_string(*announced) +
                          (*announced == 1 ? " arc, " : " arcs, ") + std::to_string(given) +
                          (given == 1 ? " follows" : " follow") + "; correct the number, or the arcs");
  return true;
}

bool PdNetBuilder::TakeArc(PdScanner& words, std::vector<Arc>& arcs) {
  const PdWord weight = words.Next();
  const PdWord name = words.Next();
  if (!Present(name, "the place of the arc")) return false;
  Arc arc;
  arc.where = weight.where;
  arc.markingDependent = weight.text == kMarkingDependent;
  if (!arc.markingDependent) {
    if (parameters_.numbers.contains(weight.text)) {
      Error(weight.where, "the multiplicity " + Quoted(weight.text) +
                              " is the name of a parameter, which the report "
                              "program takes for 0; write the number");
    } else {
      arc.weight = Integer(weight, "multiplicity", 1, kGreatest).value_or(1);
    }
  }
  const std::optional<int32_t> place = NumberOf(places_, name);
  if (!TakePoints(words, arc)) return false;
  if (!place) return true;
  arc.place = *place;
  groupOfPlace_.resize(net_.places.size());
  int64_t& group = groupOfPlace_[static_cast<size_t>(*place)];
  if (group == groups_) {
    Error(weight.where, "a second arc of this group to " + Quoted(name.text) +
                            ", of which the report program counts one; write one arc with the sum");
    return true;
  }
  group = groups_;
  arcs.push_back(std::move(arc));
  return true;
}

bool PdNetBuilder::TakePoints(PdScanner& words, Arc& arc) {
  const PdWord number = words.Next();
  if (!Present(number, "the number of path points")) return false;
  const std::optional<int64_t> announced = Integer(number, "number of path points", 0, kGreatest);
  if (!announced) return false;
  for (int64_t i = 0; i < *announced; ++i) {
    const auto x = Real(words.Next(), "coordinate of a path point");
    if (!x) return false;
    const auto y = Real(words.Next(), "coordinate of a path point");
    if (!y) return false;
    arc.path.push_back({*x, *y});
  }
  return true;
}

}  // namespace siphons
