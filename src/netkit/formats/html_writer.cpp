// Linear in what is written. The policy's hashes are those of the elements' texts to the byte, so nothing is
// put between a tag and its text.
#include "netkit/formats/html_writer.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <string_view>

#include "netkit/formats/markup_text.h"
#include "netkit/formats/page_resources.h"
#include "netkit/formats/svg_writer.h"

namespace siphons {

namespace {

using Json = nlohmann::ordered_json;

/// The bytes that the hexadecimal digits stand for, in base 64, as the policy wants its hashes.
std::string Base64OfHex(std::string_view hex) {
  constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const auto digit = [](char c) { return static_cast<uint32_t>(c <= '9' ? c - '0' : c - 'a' + 10); };
  std::string text;
  uint32_t bits = 0, count = 0;
  for (const char c : hex) {
    bits = bits << 4U | digit(c);
    count += 4;
    if (count >= 6) {
      count -= 6;
      text += kLetters[bits >> count & 0x3FU];
      bits &= (1U << count) - 1;
    }
  }
  if (count > 0) text += kLetters[bits << (6 - count) & 0x3FU];
  while (text.size() % 4 != 0) text += '=';
  return text;
}

std::string HashOf(const PageResource& resource) {
  return "'sha256-" + Base64OfHex(resource.sha256) + "'";
}

/// Tokens and weights are text in the page's data, since a script's plain numbers are exact only up to 2^53.
Json ArcsJson(const std::vector<Arc>& arcs) {
  Json list = Json::array();
  for (const Arc& arc : arcs) list.push_back({arc.place, std::to_string(arc.weight)});
  return list;
}

std::string DataOf(const PetriNet& net, const PictureOptions& options, const PageContent& content) {
  Json places = Json::array(), transitions = Json::array(), siphons = Json::array(), shown = Json::array();
  for (const Place& place : net.places) {
    places.push_back({{"name", place.name}, {"tokens", std::to_string(place.tokens)}});
  }
  for (const Transition& transition : net.transitions) {
    transitions.push_back({{"name", transition.name},
                           {"inputs", ArcsJson(transition.inputs)},
                           {"outputs", ArcsJson(transition.outputs)}});
  }
  for (const PageSiphon& siphon : content.siphons) {
    siphons.push_back(
        {{"places", siphon.places}, {"tokens", std::to_string(siphon.tokens)}, {"status", siphon.status}});
  }
  for (const Highlight& highlight : options.highlights) {
    for (const int32_t p : highlight.places) shown.push_back(p);
  }
  const Json data = {{"places", std::move(places)},   {"transitions", std::move(transitions)},
                     {"siphons", std::move(siphons)}, {"more", content.more},
                     {"sequence", content.sequence},  {"chosen", content.chosen},
                     {"shown", std::move(shown)}};
  std::string text = data.dump(-1, ' ', false, Json::error_handler_t::replace);
  for (size_t at = 0; (at = text.find('<', at)) != std::string::npos;) text.replace(at, 1, "\\u003c");
  return text;
}

std::string Head(const std::string& title) {
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; script-src " +
         HashOf(kPageScript) + "; style-src " + HashOf(kNetStyle) + " " + HashOf(kPageStyle) +
         "; base-uri 'none'; form-action 'none'\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
         title + "</title>\n<style>" + std::string(kNetStyle.text) + "</style>\n<style>" +
         std::string(kPageStyle.text) + "</style>\n</head>\n";
}

std::string Header(const PetriNet& net, const std::string& title, const PageContent& content) {
  std::string header = "<header>\n<h1>" + title + "</h1>\n<p>" + std::to_string(net.places.size()) +
                       " places, " + std::to_string(net.transitions.size()) + " transitions. " +
                       MarkupText(net.description) + "</p>\n";
  if (!content.verdict.empty()) header += "<p id=\"verdict\">" + MarkupText(content.verdict) + "</p>\n";
  return header + "</header>\n";
}

constexpr const char* kZoomButtons = R"(<div class="zoom">
<button id="closer" aria-label="Zoom in">+</button>
<button id="farther" aria-label="Zoom out">&minus;</button>
<button id="fit">Fit</button>
</div>
</main>
)";

constexpr const char* kSide =
    R"(<aside aria-label="Minimal siphons">
<h2 id="count"></h2>
<input id="search" type="search" placeholder="Search places and transitions" aria-label="Search">
<div class="controls">
<label>Order <select id="order"><option value="number">number</option><option value="size">size</option>)"
    R"(<option value="tokens">tokens</option><option value="status">status</option>)"
    R"(</select></label>
<label>Status <select id="status"><option value="">all</option></select></label>
</div>
<div id="list" role="listbox" tabindex="0" aria-labelledby="count"><div id="rows"></div></div>
<p id="detail" aria-live="polite"></p>
</aside>
<footer id="player" aria-label="The way into the deadlock" hidden>
<button id="first" aria-label="To the initial marking">&laquo;</button>
<button id="back" aria-label="One firing back">&lsaquo;</button>
<button id="play">Play</button>
<button id="next" aria-label="One firing on">&rsaquo;</button>
<button id="last" aria-label="To the dead marking">&raquo;</button>
<span id="step" aria-live="polite"></span>
</footer>
)";

}  // namespace

std::string HtmlOf(const PetriNet& net, const Drawing& drawing, const PictureOptions& options,
                   const PageContent& content) {
  const std::string title = MarkupText(net.name);
  return Head(title) + "<body>\n" + Header(net, title, content) +
         "<main id=\"picture\" tabindex=\"0\" aria-label=\"The net; plus, minus, 0 and the arrow keys zoom "
         "and "
         "move\">\n" +
         SvgOf(net, drawing, options, true) + kZoomButtons + kSide +
         "<script type=\"application/json\" id=\"data\">" + DataOf(net, options, content) +
         "</script>\n<script>" + std::string(kPageScript.text) + "</script>\n</body>\n</html>\n";
}

}  // namespace siphons
