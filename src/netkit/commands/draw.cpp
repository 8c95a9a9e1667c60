// netkit draw: the picture of a net as SVG, DOT, or a page for the browser; the file's ending says which.
//
// The page lists the minimal siphons, ten thousand at most, what may become of them where they are a thousand
// at most, and whether the net can block. All of it may take its time; a limit ends it early, and the page
// then says what it leaves out.
#include <algorithm>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "netkit/commands/commands.h"
#include "netkit/commands/question.h"
#include "netkit/formats/dot_writer.h"
#include "netkit/formats/html_writer.h"
#include "netkit/formats/layout.h"
#include "netkit/formats/svg_writer.h"
#include "netkit/model/monitor_names.h"
#include "netkit/siphons/minimal_siphons.h"
#include "netkit/verdict/siphon_status.h"
#include "netkit/verdict/verdict.h"

namespace siphons {

namespace {

constexpr size_t kMostListed = 10'000;
constexpr size_t kMostDecided = 1'000;  // each may take a proof of its own

struct DrawOptions : QuestionOptions {
  int64_t siphon = 0;               ///< its number in the list of `netkit siphons`; 0: none
  std::vector<std::string> places;  ///< names
  bool layout = false;              ///< whatever positions the file has
};

bool EndsWith(const std::string& file, std::string_view ending) {
  return std::string_view(file).ends_with(ending);
}

struct SiphonList {
  std::vector<PlaceList> sets;  ///< in the order of `netkit siphons`
  bool complete = true;
};

SiphonList MinimalSiphons(const PetriNet& net, size_t most, RunControl& control) {
  SiphonList list;
  const ArcSets arcs = ArcSetsOf(net);
  const auto take = [&](std::span<const int32_t> set) {
    if (list.sets.size() == most) return false;
    list.sets.emplace_back(set.begin(), set.end());
    control.Count();
    return true;
  };
  list.complete = ForEachMinimalSiphon(arcs, {.within = AllPlaces(arcs), .containing = {}}, take,
                                       [&control] { return control.Stop(); });
  std::sort(list.sets.begin(), list.sets.end(), ShorterOrEarlier);
  return list;
}

std::string ClassOfSiphon(size_t index) {
  return "siphon-" + std::to_string(index + 1);
}

/// What --siphon and --places ask for.
PictureOptions PictureOptionsOf(const PetriNet& net, const DrawOptions& options, const SiphonList& siphons) {
  PictureOptions picture;
  for (const Place& place : net.places) picture.monitors.push_back(IsMonitorName(place.name));
  if (options.siphon > 0) {
    const auto index = static_cast<size_t>(options.siphon - 1);
    if (index >= siphons.sets.size()) {
      throw WrongUsage{siphons.complete
                           ? "the net has " + std::to_string(siphons.sets.size()) + " minimal siphons only"
                           : "siphon " + std::to_string(options.siphon) + " was not reached"};
    }
    picture.highlights.push_back({ClassOfSiphon(index), siphons.sets[index]});
  }
  if (!options.places.empty()) {
    Highlight chosen{"chosen", {}};
    for (const std::string& name : options.places) chosen.places.push_back(PlaceOfName(net, name));
    std::sort(chosen.places.begin(), chosen.places.end());
    chosen.places.erase(std::unique(chosen.places.begin(), chosen.places.end()), chosen.places.end());
    picture.highlights.push_back(std::move(chosen));
  }
  return picture;
}

Drawing DrawingFor(const PetriNet& net, bool layout) {
  if (!layout && HasSensiblePositions(net)) return DrawingByPositions(net);
  std::optional<Drawing> drawing = LaidOut(net);
  if (!drawing) {
    throw WrongUsage{CanLayOut()
                         ? "no layout was found for this net"
                         : "the net has no positions to draw it by, and this netkit was built without "
                           "Graphviz, which would lay it out; draw a .dot file"};
  }
  return *std::move(drawing);
}

/// The verdict in a sentence.
std::string SentenceOf(const Verdict& verdict) {
  switch (verdict.finding) {
    case Finding::kDeadlockFree:
      return "Deadlock-free: a proof rules a dead marking out.";
    case Finding::kDeadlock:
      return "Deadlock: after " + std::to_string(verdict.sequence.size()) +
             (verdict.sequence.size() == 1 ? " firing" : " firings") + " no transition can fire.";
    case Finding::kUndecided:
      break;
  }
  return "Undecided: " + (verdict.reason.empty() ? "the time ended first" : verdict.reason) + ".";
}

PageContent ContentOf(const PetriNet& net, const SiphonList& siphons, const DrawOptions& options,
                      RunControl& control) {
  PageContent content;
  SiphonStatuses statuses(net);
  const bool decided = siphons.sets.size() <= kMostDecided;
  for (const PlaceList& set : siphons.sets) {
    PageSiphon& entry = content.siphons.emplace_back();
    entry.places = set;
    entry.tokens = TokensOf(net, set);
    if (decided) entry.status = TextOf(statuses.Of(set, [&control] { return control.Stop(); }));
  }
  if (!siphons.complete) content.more = " (not all: there are more)";
  content.chosen = static_cast<int32_t>(options.siphon) - 1;
  Verdict verdict = Decide(net, VerdictLimits(), [&control](int64_t) { return control.Stop(); });
  content.verdict = SentenceOf(verdict);
  content.sequence = std::move(verdict.sequence);
  return content;
}

Answer Draw(const PetriNet& net, const DrawOptions& options, RunControl& control) {
  const bool isPage = EndsWith(options.output, ".html");
  SiphonList siphons;
  if (isPage || options.siphon > 0) {
    const size_t most = std::max(kMostListed, static_cast<size_t>(options.siphon));
    siphons = MinimalSiphons(net, most, control);
  }
  const PictureOptions picture = PictureOptionsOf(net, options, siphons);
  if (EndsWith(options.output, ".dot")) return {DotOf(net, picture), {}, kComplete};
  const Drawing drawing = DrawingFor(net, options.layout);
  if (!isPage) return {SvgOf(net, drawing, picture), {}, kComplete};
  return {HtmlOf(net, drawing, picture, ContentOf(net, siphons, options, control)), {}, kComplete};
}

std::string FaultOfPictureFile(const std::string& file) {
  const bool known = EndsWith(file, ".svg") || EndsWith(file, ".dot") || EndsWith(file, ".html");
  return known ? "" : "a file that ends in .svg, .dot or .html is wanted";
}

}  // namespace

void AddDraw(const Command& app) {
  const auto options = std::make_shared<DrawOptions>();
  const Command command = app.AddSubcommand("draw", "Draw the net");
  options->nets.resize(1);
  command.AddOption("NET", &options->nets[0], "file (.PD, .pnml), - for standard input, or a bare name")
      .Required();
  command
      .AddOption(
          "-o,--output", &options->output,
          "the picture: FILE.svg, FILE.dot for Graphviz, or FILE.html, a page with the list of minimal "
          "siphons and the way into a deadlock")
      .Required()
      .Check(FaultOfPictureFile)
      .ValueName("FILE");
  command
      .AddOption("--siphon", &options->siphon,
                 "fill the places of minimal siphon N, as netkit siphons numbers them")
      .Check(FaultOfCount)
      .ValueName("N");
  command.AddOption("--places", &options->places, "fill these places").SeparatedBy(',').ValueName("NAME,...");
  command.AddFlag("--layout", options->layout, "lay the net out anew, whatever positions its file has");
  command.AddOption("--timeout", &options->timeout, "stop looking for siphons and deadlocks after this time")
      .Check(FaultOfDuration)
      .ValueName("SECONDS");
  command.SetFooter(
      "Exit status: 0 drawn, 1 the net cannot be read or the picture not be written, 2 wrong usage, "
      "255 out of memory.");
  command.SetAction([options] {
    return AnswerEach(*options, "siphons", [&options](const PetriNet& net, RunControl& control) {
      return Draw(net, *options, control);
    });
  });
}

}  // namespace siphons
