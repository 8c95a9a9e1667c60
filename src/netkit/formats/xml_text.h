// An XML file before it is parsed: what the parser does not look at, and what would let a small or damaged
// file take all memory.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "netkit/formats/diagnostics.h"

namespace siphons {

/// The line and the column of every offset of a text, also when the text has changed meanwhile.
class LineTable {
 public:
  explicit LineTable(const std::string& text);
  SourcePosition Where(int64_t offset) const;

 private:
  std::vector<int64_t> starts_;  ///< of the lines
};

/// Makes the text UTF-8 where its declaration says ISO-8859-1, and reports what no PNML file has: another
/// encoding, bytes that are no UTF-8, a document type, entities that nobody declares, elements nested deeper
/// than 200. What would take all memory is refused, too: more than 256 MiB, 10 million lines, or 10 million
/// elements and attributes. Linear in the text. False after a report.
bool PrepareXml(std::string& text, Diagnostics& diagnostics);

}  // namespace siphons
