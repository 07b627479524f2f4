// PageSelection.h - which pages of a document a region template applies to.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace qent::dataextract {

// Parsed from "all", "first", "last", "3", "2-4", "2-last" or a list of these joined by ","
// (blanks around items allowed, names without regard to ASCII case). Pages count from 1.
class PageSelection {
public:
  PageSelection() = default;  // all pages
  // Throws std::invalid_argument with a message that names the offending item.
  static PageSelection parse(std::string_view text);

  bool selects(std::uint32_t page, std::uint32_t pageCount) const;

private:
  // A page number, or (fromEnd) the last page.
  struct Bound {
    std::uint32_t number = 1;
    bool fromEnd = false;
  };
  struct Range {
    Bound first;
    Bound last;
  };
  std::vector<Range> ranges_{Range{Bound{1, false}, Bound{0, true}}};
};

}  // namespace qent::dataextract
