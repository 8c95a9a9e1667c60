// Names of a net as text of XML and HTML. A name may hold any bytes; a picture of it must stay a picture.
#pragma once

#include <string>
#include <string_view>

namespace siphons {

/// The text with the characters of markup as references, fit for an element's content and for a quoted
/// attribute. What is not UTF-8, and control characters that XML forbids, become U+FFFD.
std::string MarkupText(std::string_view text);

}  // namespace siphons
