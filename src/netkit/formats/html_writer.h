// The page of a net: one HTML file that needs nothing from outside, with the picture, the list of its minimal
// siphons and, where a deadlock is known, the firings that lead into it step by step.
//
// Names of the net are data to the page. They stand in it as JSON whose "<" is escaped, the page's script
// puts them into the document as text, and a content security policy names the only script and styles that a
// browser may run, by their hashes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "netkit/formats/drawing.h"
#include "netkit/formats/picture.h"
#include "netkit/model/petri_net.h"

namespace siphons {

struct PageSiphon {
  std::vector<int32_t> places;  ///< ascending
  int64_t tokens = 0;           ///< initially
  std::string status;           ///< such as "may run dry"; empty when it is not known
};

struct PageContent {
  std::vector<PageSiphon> siphons;  ///< in the order in which netkit lists them
  std::string more;                 ///< what the list leaves out and why, or empty
  std::string verdict;              ///< one sentence; empty: the net was not checked
  std::vector<int32_t> sequence;    ///< transitions from the initial marking to a dead one; may be empty
  int32_t chosen = -1;              ///< the siphon shown first, an index; -1: none
};

/// The whole document.
std::string HtmlOf(const PetriNet& net, const Drawing& drawing, const PictureOptions& options,
                   const PageContent& content);

}  // namespace siphons
