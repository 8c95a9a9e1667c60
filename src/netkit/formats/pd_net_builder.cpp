#include "netkit/formats/pd_net_builder.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>
#include <utility>

#include "netkit/formats/near_names.h"
#include "netkit/formats/pd_reader.h"
#include "netkit/formats/plain_numbers.h"

namespace siphons {

namespace {

constexpr int64_t kGreatest = std::numeric_limits<int32_t>::max();

std::string Name(PdKeyword keyword) {
  return std::string(TextOf(keyword));
}

std::string Counted(int64_t number, std::string_view thing) {
  return std::to_string(number) + " " + std::string(thing) + (number == 1 ? "" : "s");
}

std::string InLine(SourcePosition where) {
  return "in line " + std::to_string(where.line);
}

}  // namespace

void PdNetBuilder::Take(const PdSection& section) {
  PdScanner words(section.lines);
  PdKeyword keyword = section.keyword;
  SourcePosition where = section.where;
  while (true) {
    const bool whole = Handle(keyword, where, words);
    const PdWord left = words.Peek();
    if (left.text.empty()) return;
    const std::optional<PdWord> misspelt = words.FindMisspeltKeyword(false);
    if (whole && (!misspelt || misspelt->where.line != left.where.line)) {
      Error(left.where,
            Quoted(left.text) + " is left over behind a complete " + Name(keyword) + "; remove it");
    }
    if (!misspelt) return;
    keyword = *NearestKeyword(misspelt->text);
    where = misspelt->where;
    Error(where, Quoted(misspelt->text) + " begins no section; did you mean " + Quoted(Name(keyword)) + "?");
    words.Next();
  }
}

bool PdNetBuilder::Handle(PdKeyword keyword, SourcePosition where, PdScanner& words) {
  switch (keyword) {
    case PdKeyword::kNetType:
      if (netTypeWhere_.line > 0)
        Error(where, "a second net type, the first is " + InLine(netTypeWhere_) + "; remove one");
      netTypeWhere_ = where;
      return TakeNetType(words);
    case PdKeyword::kDescription:
      TakeDescription(where, words);
      return true;
    case PdKeyword::kPlaces:
      return TakeAnnouncement(places_, 1, where, words);
    case PdKeyword::kTransitions:
      return TakeAnnouncement(transitions_, 1, where, words);
    case PdKeyword::kDefinitionParameters:
      return TakeAnnouncement(parameters_, 0, where, words);
    case PdKeyword::kRewardMeasures:
      return TakeAnnouncement(measures_, 0, where, words);
    case PdKeyword::kDelayParDef:
      return TakeParameterText(words);
    case PdKeyword::kDefinitionParameter:
      return TakeParameter(where, words);
    case PdKeyword::kPlace:
      return TakePlace(where, words);
    case PdKeyword::kTransition:
      return TakeTransition(where, words);
    case PdKeyword::kWeight:
    case PdKeyword::kExpDelay:
    case PdKeyword::kDetDelay:
    case PdKeyword::kGenDelay:
      return TakeDelayText(keyword, words);
    case PdKeyword::kFunction:
      return TakeFunction(words);
    case PdKeyword::kCardinality:
      return TakeCardinality(words);
    case PdKeyword::kMeasure:
      return TakeMeasure(where, words);
  }
  return true;
}

// --- header sections and places

bool PdNetBuilder::TakeNetType(PdScanner& words) {
  const PdWord word = words.Peek();
  if (!Present(word, "the net type")) return false;
  const std::string_view rest = words.RestOfLine();
  words.Next();
  const std::optional<size_t> type = OneOf(word, "net type", {"GSPN", "DSPN", "EDSPN", "CDSPN"});
  if (!type) return false;
  net_.type = static_cast<NetClass>(*type);
  if (word.startsLine || (rest.size() > word.text.size() && words.AtEnd())) {
    Error(word.where,
          "the report program knows the net type only between a blank and the end of the line; put " +
              Quoted("NET_TYPE: " + std::string(word.text)) + " on a line without blanks behind it");
    return false;
  }
  return true;
}

void PdNetBuilder::TakeDescription(SourcePosition where, PdScanner& words) {
  if (descriptionWhere_.line > 0) {
    Error(where, "a second description, the first is " + InLine(descriptionWhere_) + "; remove one");
  }
  descriptionWhere_ = where;
  net_.description = words.TextToEnd();
}

bool PdNetBuilder::TakeAnnouncement(Table& table, int64_t least, SourcePosition where, PdScanner& words) {
  const PdWord word = words.Next();
  if (table.where.line > 0) {
    Error(where, "the number of " + std::string(table.kind) + "s is announced a second time, the first is " +
                     InLine(table.where) + "; remove one");
    return true;
  }
  table.where = where;
  if (!Present(word, "the number of " + std::string(table.kind) + "s")) return false;
  table.where = word.where;
  table.announced = Integer(word, "number of " + std::string(table.kind) + "s", least, kGreatest);
  return table.announced.has_value();
}

bool PdNetBuilder::TakePlace(SourcePosition where, PdScanner& words) {
  const PdWord name = words.Next();
  Declare(places_, net_.places.size(), where, name);
  Place& place = net_.places.emplace_back();
  place.name = name.text;
  place.where = name.where;
  const PdWord marking = words.Next();
  if (!Present(name, "the name of the place") || !Present(marking, "the number of tokens")) return false;
  TakeMarking(marking, place);
  constexpr size_t kCoordinates = 4;
  std::array<double, kCoordinates> values{};
  size_t count = 0;
  for (; count < kCoordinates && !words.AtEnd(); ++count) {
    const PdWord word = words.Peek();
    if (word.startsLine && NearestKeyword(word.text)) break;
    const std::optional<double> value = Real(word, "coordinate");
    if (!value) return false;
    values[count] = *value;
    words.Next();
  }
  if (count % 2 != 0) {
    Error(marking.where, "behind " + Quoted(marking.text) + (count == 1 ? " stands " : " stand ") +
                             Counted(static_cast<int64_t>(count), "coordinate") +
                             " instead of 0, 2 or 4; was the number of tokens forgotten?");
    return false;
  }
  if (count >= 2) place.position = {values[0], values[1]};
  if (count == kCoordinates) place.labelPosition = {values[2], values[3]};
  return true;
}

void PdNetBuilder::TakeMarking(const PdWord& word, Place& place) {
  if (std::isalpha(static_cast<unsigned char>(word.text[0])) == 0) {
    place.tokens = Integer(word, "number of tokens", 0, kGreatest).value_or(0);
    return;
  }
  place.markingParameter = word.text;
  const std::optional<int32_t> number = NumberOf(parameters_, word);
  if (!number) return;
  const Parameter& parameter = net_.parameters[static_cast<size_t>(*number)];
  if (parameter.text) {
    Error(word.where,
          "the parameter " + Quoted(word.text) + " depends on the marking; a number of tokens cannot");
  } else if (parameter.value < 0 || parameter.value > static_cast<double>(kGreatest) ||
             parameter.value != std::floor(parameter.value)) {
    Error(word.where, "the parameter " + Quoted(word.text) + " is " + RealText(parameter.value) +
                          "; a number of tokens is a whole number from 0 to " + std::to_string(kGreatest));
  } else {
    place.tokens = static_cast<int64_t>(parameter.value);
  }
}

void PdNetBuilder::CheckCount(const Table& table, int64_t least) {
  const std::string keyword = Name(table.announcement), kind(table.kind);
  if (table.where.line == 0) {
    if (least > 0 && table.given == 0)
      Error({1, 1}, "no " + keyword + " announces the " + kind + "s; is this a .PD file?");
    return;
  }
  if (!table.announced || *table.announced == table.given) return;
  Error(table.where, keyword + " announces " + Counted(*table.announced, kind) + ", the file has " +
                         std::to_string(table.given) +
                         "; correct the number, or look for what is missing or too much");
}

PetriNet PdNetBuilder::Finish() {
  CheckTexts();
  ReportUnknown();
  CheckCount(places_, 1);
  CheckCount(transitions_, 1);
  CheckCount(parameters_, 0);
  CheckCount(measures_, 0);
  return std::move(net_);
}

// --- what all use

bool PdNetBuilder::Present(const PdWord& word, std::string_view what) {
  if (!word.text.empty()) return true;
  Error(word.where, std::string(what) + " is missing; the section ends here");
  return false;
}

std::optional<int64_t> PdNetBuilder::Integer(const PdWord& word, std::string_view what, int64_t least,
                                             int64_t greatest) {
  const std::optional<int64_t> value = PlainDecimal(word.text);
  if (value && *value >= least && *value <= greatest) return value;
  const std::string wanted = "from " + std::to_string(least) + " to " + std::to_string(greatest);
  if (IsPlainDecimal(word.text)) {
    Error(word.where,
          "the " + std::string(what) + " " + Quoted(word.text) + " is out of range; it goes " + wanted);
  } else {
    Error(word.where, "the " + std::string(what) + " " + Quoted(word.text) +
                          " is no plain number; write digits " + wanted +
                          ", without sign, leading zero, point or exponent");
  }
  return std::nullopt;
}

std::optional<double> PdNetBuilder::Real(const PdWord& word, std::string_view what) {
  if (!Present(word, "the " + std::string(what))) return std::nullopt;
  const std::optional<double> value = PlainReal(word.text);
  if (!value) {
    Error(word.where, "the " + std::string(what) + " " + Quoted(word.text) +
                          " is no number; write it with digits, a point and an exponent at most");
  }
  return value;
}

bool PdNetBuilder::Points(PdScanner& words, std::string_view what, std::optional<Point>& point) {
  const std::optional<double> x = Real(words.Next(), what);
  const std::optional<double> y = x ? Real(words.Next(), what) : std::nullopt;
  if (y) point = {*x, *y};
  return y.has_value();
}

std::optional<size_t> PdNetBuilder::OneOf(const PdWord& word, std::string_view what,
                                          const std::vector<std::string_view>& known) {
  std::string all;
  for (size_t i = 0; i < known.size(); ++i) {
    if (word.text == known[i]) return i;
    all += (i == 0 ? "" : i + 1 == known.size() ? " or " : ", ") + std::string(known[i]);
  }
  Error(word.where, "unknown " + std::string(what) + " " + Quoted(word.text) + "; write " + all);
  return std::nullopt;
}

void PdNetBuilder::Declare(Table& table, size_t number, SourcePosition section, const PdWord& name) {
  ++table.given;
  if (table.where.line == 0 && !table.orderReported) {
    table.orderReported = true;
    Error(section, "a " + std::string(table.kind) + " stands here before " + Name(table.announcement) +
                       " has announced their number; put that first");
  }
  if (name.text.empty()) return;
  const Table* const others[] = {&table, &table == &places_ ? &transitions_ : nullptr,
                                 &table == &transitions_ ? &places_ : nullptr};
  for (const Table* other : others) {
    if (other == nullptr || !other->numbers.contains(name.text)) continue;
    Error(name.where, "the name " + Quoted(name.text) + " is taken by a " + std::string(other->kind) + " " +
                          InLine(WhereDeclared(*other, name.text)) + "; rename one of them");
  }
  table.numbers.emplace(name.text, static_cast<int32_t>(number));
}

SourcePosition PdNetBuilder::WhereDeclared(const Table& table, std::string_view name) const {
  const auto number = static_cast<size_t>(table.numbers.at(name));
  if (&table == &places_) return net_.places[number].where;
  if (&table == &transitions_) return net_.transitions[number].where;
  if (&table == &parameters_) return net_.parameters[number].where;
  return net_.measures[number].where;
}

std::optional<int32_t> PdNetBuilder::NumberOf(const Table& table, const PdWord& name) {
  const auto found = table.numbers.find(name.text);
  if (found != table.numbers.end()) return found->second;
  unknown_.push_back({&table, name});
  return std::nullopt;
}

bool PdNetBuilder::UsedTooEarly(const Table& table, std::string_view name) const {
  constexpr size_t kMany = 1000;  // so many are no slip, and looking through them would take long
  if (unknown_.size() > kMany) return true;
  return std::any_of(unknown_.begin(), unknown_.end(), [&](const Unknown& unknown) {
    return unknown.table == &table && unknown.name.text == name;
  });
}

/// Reports the names that were not declared where they were used: only now all names are known.
void PdNetBuilder::ReportUnknown() {
  for (const Unknown& unknown : unknown_) {
    const Table& table = *unknown.table;
    const std::string kind(table.kind);
    if (table.numbers.contains(unknown.name.text)) {
      Error(unknown.name.where, "the " + kind + " " + Quoted(unknown.name.text) + " is declared only " +
                                    InLine(WhereDeclared(table, unknown.name.text)) +
                                    "; move its declaration above this line");
      continue;
    }
    std::vector<std::string_view> names;
    if (diagnostics_.Errors() < Diagnostics::kShown) {
      for (const auto& [name, number] : table.numbers) names.push_back(name);
      std::sort(names.begin(), names.end());
    }
    Error(unknown.name.where, "no " + kind + " has the name " + Quoted(unknown.name.text) +
                                  DidYouMean(unknown.name.text, names, "; declare it above this line"));
  }
}

std::optional<PetriNet> ReadPd(std::string_view source, std::string name, Diagnostics& diagnostics) {
  PdSectionCutter cutter(source, diagnostics);
  PdNetBuilder builder(diagnostics);
  for (PdSection section; cutter.Next(section);) builder.Take(section);
  PetriNet net = builder.Finish();
  net.name = std::move(name);
  if (diagnostics.HasErrors()) return std::nullopt;
  return net;
}

}  // namespace siphons
