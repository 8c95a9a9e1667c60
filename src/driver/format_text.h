// What printf makes of a text from outside that is used as its format.
#pragma once

#include <string>

namespace siphons {

/// The text as a format without arguments prints it: "%%" gives "%", and every other conversion takes zero
/// (an empty text, a null pointer) for the argument that it does not have. A conversion that gives more than
/// 4095 characters ends the process by abort, after a line on standard error.
std::string FormattedText(const char* format);

}  // namespace siphons
