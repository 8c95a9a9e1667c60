// netkit siphons and netkit traps: the minimal ones, ordered by number of places and then by place numbers.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "netkit/commands/commands.h"
#include "netkit/commands/question.h"
#include "netkit/commands/status_option.h"
#include "netkit/siphons/minimal_siphons.h"
#include "netkit/siphons/smallest_siphons.h"

namespace siphons {

namespace {

/// A share of the answer: number `part` of `parts`.
struct Share {
  int32_t part = 1;
  int32_t parts = 1;
};

struct EnumerationOptions : QuestionOptions {
  std::vector<std::string> containing;  ///< place names
  bool unmarked = false;
  bool traps = false;
  int64_t max = 0;  ///< 0: all
  bool smallest = false;
  bool stream = false;
  bool count = false;
  int32_t jobs = 1;
  std::string share;  ///< K/N; empty: all
  StatusOptions status;

  const char* Kind() const { return traps ? "traps" : "siphons"; }
};

constexpr int32_t kMostJobs = 1024;
constexpr int32_t kMostParts = 1000000;

std::optional<Share> ShareOf(const std::string& text) {
  const size_t slash = text.find('/');
  if (slash == std::string::npos) return std::nullopt;
  const std::string part = text.substr(0, slash), parts = text.substr(slash + 1);
  constexpr size_t kMostDigits = 7;
  for (const std::string& number : {part, parts}) {
    if (!FaultOfCount(number).empty() || number.size() > kMostDigits) return std::nullopt;
  }
  const Share share{std::stoi(part), std::stoi(parts)};
  return share.part <= share.parts && share.parts <= kMostParts ? std::optional(share) : std::nullopt;
}

std::string FaultOfShare(const std::string& text) {
  return ShareOf(text) ? "" : "a share K/N is wanted, with K from 1 to N";
}

std::string FaultOfJobs(const std::string& text) {
  const bool fits = FaultOfCount(text).empty() && text.size() <= 4 && std::stoi(text) <= kMostJobs;
  return fits ? "" : "a number from 1 to " + std::to_string(kMostJobs) + " is wanted";
}

PlaceList UnmarkedPlaces(const PetriNet& net) {
  PlaceList unmarked;
  for (size_t p = 0; p < net.places.size(); ++p) {
    if (net.places[p].tokens == 0) unmarked.push_back(static_cast<int32_t>(p));
  }
  return unmarked;
}

/// What is found, and how it ended.
struct Findings {
  std::vector<StatedSiphon> sets;  ///< none when they are only counted, or written as they come
  int64_t count = 0;
  bool complete = false;
};

std::string LineOf(const PetriNet& net, const StatedSiphon& set) {
  std::string line = MarkingLine(net, set.places);
  line.insert(line.size() - 1, StatusSuffix(set));
  return line;
}

Json MembersOf(const PetriNet& net, const StatedSiphon& set) {
  Json json = JsonOf(net, set.places);
  if (set.status) json["status"] = TextOf(*set.status);
  return json;
}

/// Writes sets to standard output as they come, at the latest some time after.
class Stream {
 public:
  Stream(const PetriNet& net, const EnumerationOptions& options) : net_(net), options_(options) {}

  /// False when the output takes nothing any more.
  bool Write(const StatedSiphon& set) {
    std::string line;
    if (options_.json) {
      Json json = {{"version", kAnswerVersion}, {"net", options_.nets[0]}};
      json.update(MembersOf(net_, set));
      line = JsonLine(json);
    } else {
      line = LineOf(net_, set);
    }
    std::fwrite(line.data(), 1, line.size(), stdout);
    const Clock::time_point now = Clock::now();
    if (now < nextFlush_) return true;
    constexpr std::chrono::milliseconds kBetweenFlushes{100};
    nextFlush_ = now + kBetweenFlushes;
    return std::fflush(stdout) == 0;
  }

 private:
  using Clock = std::chrono::steady_clock;

  const PetriNet& net_;
  const EnumerationOptions& options_;
  Clock::time_point nextFlush_;
};

/// Takes sets as they are found, as many as are wanted.
class Collector {
 public:
  Collector(const PetriNet& net, const EnumerationOptions& options, RunControl& control)
      : options_(options), filter_(net, options.status), stream_(net, options), control_(control) {}

  bool Take(std::span<const int32_t> set) {
    std::optional<StatedSiphon> wanted =
        filter_.Wanted({set.begin(), set.end()}, [this] { return control_.Stop(); });
    if (filter_.Decides() && control_.Stop()) return false;
    if (!wanted) return true;
    if (options_.max > 0 && findings_.count == options_.max) {
      control_.SetReason("maximum reached");  // only now it is certain that there are more
      return false;
    }
    ++findings_.count;
    control_.Count();
    if (options_.count) return true;
    if (options_.stream) return options_.quiet || stream_.Write(*wanted);
    // What sorting and writing it will take, measured generously, counts as time already spent.
    constexpr double kTextSeconds = 1e-7, kJsonSeconds = 1e-6;
    control_.Reserve(static_cast<double>(set.size() + 1) * (options_.json ? kJsonSeconds : kTextSeconds));
    findings_.sets.push_back(std::move(*wanted));
    return true;
  }

  Findings Finish(bool complete) {
    std::sort(findings_.sets.begin(), findings_.sets.end(),
              [](const auto& a, const auto& b) { return ShorterOrEarlier(a.places, b.places); });
    findings_.complete = complete;
    return std::move(findings_);
  }

 private:
  const EnumerationOptions& options_;
  StatusFilter filter_;
  Stream stream_;
  RunControl& control_;
  Findings findings_;
};

Findings Smallest(const ArcSets& arcs, SiphonQuery query, const EnumerationOptions& options,
                  Collector& collector, RunControl& control) {
  const SmallestSiphons smallest =
      FindSmallestSiphons(arcs, std::move(query), options.jobs, static_cast<size_t>(options.max),
                          [&control] { return control.Stop(); });
  for (const PlaceList& set : smallest.siphons) collector.Take(set);
  if (!smallest.stopped && !smallest.areAll) control.SetReason("maximum reached");
  return collector.Finish(smallest.areAll);
}

Findings Find(const PetriNet& net, const EnumerationOptions& options, RunControl& control) {
  const ArcSets arcs = options.traps ? Reversed(ArcSetsOf(net)) : ArcSetsOf(net);
  SiphonQuery query{options.unmarked ? UnmarkedPlaces(net) : AllPlaces(arcs), {}};
  for (const std::string& name : options.containing) query.containing.push_back(PlaceOfName(net, name));
  if (const std::optional<Share> share = ShareOf(options.share)) {
    query.part = share->part;
    query.parts = share->parts;
  }
  Collector collector(net, options, control);
  if (options.smallest) return Smallest(arcs, std::move(query), options, collector, control);
  const auto take = [&collector](std::span<const int32_t> set) { return collector.Take(set); };
  const auto stop = [&control] { return control.Stop(); };
  return collector.Finish(EnumerateMinimalSiphons(arcs, query, options.jobs, take, stop));
}

/// About the length of the lines of the sets, with names as long as the net's are on the average; a text that
/// has it beforehand is not copied as it grows.
size_t ExpectedLength(const PetriNet& net, const std::vector<StatedSiphon>& sets) {
  size_t nameLengths = 0, places = 0;
  for (const Place& place : net.places) nameLengths += place.name.size() + 1;
  for (const StatedSiphon& set : sets) places += set.places.size();
  constexpr size_t kRestOfLine = 20;
  return sets.size() * kRestOfLine + places * (nameLengths / std::max<size_t>(1, net.places.size()) + 1);
}

std::string TextOf(const PetriNet& net, const EnumerationOptions& options, const Findings& findings,
                   const std::string& reason) {
  std::string text = std::string("No. of ") + options.Kind() + " = " + std::to_string(findings.count) +
                     (options.share.empty() ? "" : " (part " + options.share + ")") +
                     (reason.empty() ? "" : " (incomplete: " + reason + ")") + "\n";
  text.reserve(text.size() + ExpectedLength(net, findings.sets));
  for (const StatedSiphon& set : findings.sets) text += LineOf(net, set);
  return text;
}

Json JsonAnswer(const PetriNet& net, const EnumerationOptions& options, const Findings& findings,
                const std::string& reason) {
  Json answer = {{"counts",
                  {{"places", net.places.size()},
                   {"transitions", net.transitions.size()},
                   {options.Kind(), findings.count}}}};
  if (!options.share.empty()) answer["part"] = options.share;
  answer["complete"] = findings.complete;
  answer["reason"] = ReasonOf(reason);
  if (options.count || options.stream) return answer;
  Json list = Json::array();
  for (const StatedSiphon& set : findings.sets) list.push_back(MembersOf(net, set));
  answer[options.Kind()] = std::move(list);
  return answer;
}

Answer AnswerAbout(const PetriNet& net, const EnumerationOptions& options, RunControl& control) {
  const Findings findings = Find(net, options, control);
  const std::string& reason = control.Reason();
  return {options.json ? "" : TextOf(net, options, findings, reason),
          options.json ? JsonAnswer(net, options, findings, reason) : Json(),
          findings.complete ? kComplete : kIncomplete};
}

}  // namespace

void AddMinimalSets(const Command& app, bool traps) {
  const auto options = std::make_shared<EnumerationOptions>();
  options->traps = traps;
  const Command command =
      AddLongQuestion(app, traps ? "traps" : "siphons",
                      traps ? "List all minimal traps" : "List all minimal siphons", *options);
  command.AddFlag("--unmarked", options->unmarked, "only those whose places are all unmarked initially");
  command.AddOption("--containing", &options->containing, "only those that contain PLACE; may be repeated")
      .ValueName("PLACE")
      .OneArgument();
  command.AddOption("--max", &options->max, "stop after N").Check(FaultOfCount).ValueName("N");
  command.AddFlag("--smallest", options->smallest, "the N with the fewest places; with --max N")
      .Needs("--max");
  command.AddFlag("--count", options->count, "only say how many there are");
  command
      .AddFlag("--stream", options->stream,
               "write each as it is found, in no particular order, and the number last")
      .Excludes({"--smallest", "--count", "--output"});
  command.AddOption("--jobs", &options->jobs, "search with N threads; the answer stays the same")
      .Check(FaultOfJobs)
      .ValueName("N");
  command
      .AddOption("--part", &options->share,
                 "only the share K of N, for as many machines; the shares together are the answer")
      .Check(FaultOfShare)
      .ValueName("K/N");
  if (!traps) AddStatusOptions(command, options->status);  // a trap has no such status
  command.SetFooter(
      "Exit status: 0 complete, 1 a net cannot be read or an answer not be written, 2 wrong usage, "
      "3 stopped at a limit or interrupted (what was found is written then, too), 255 out of memory.");
  command.SetAction([options] {
    RequireOneNet(*options, options->stream, "--stream");
    return AnswerEach(*options, options->Kind(), [&options](const PetriNet& net, RunControl& control) {
      return AnswerAbout(net, *options, control);
    });
  });
}

}  // namespace siphons
