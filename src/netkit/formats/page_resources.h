// The page's parts that are files of their own (page/): their texts and their SHA-256 sums, put into the
// program by the build.
#pragma once

#include <string_view>

namespace siphons {

struct PageResource {
  std::string_view text;
  std::string_view sha256;  ///< 64 hexadecimal digits
};

extern const PageResource kNetStyle;
extern const PageResource kPageStyle;
extern const PageResource kPageScript;

}  // namespace siphons
