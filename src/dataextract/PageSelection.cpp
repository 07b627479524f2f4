// PageSelection.cpp - parsing and testing page selections.
#include "dataextract/PageSelection.h"

#include "base/Unicode.h"

#include <charconv>
#include <stdexcept>
#include <string>

namespace qent::dataextract {

namespace {

std::string_view trim(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

[[noreturn]] void refuse(std::string_view item, const char* why) {
  std::string message = "\"";
  message += item;
  message += "\" ";
  message += why;
  throw std::invalid_argument(message);
}

}  // namespace

PageSelection PageSelection::parse(std::string_view text) {
  const auto bound = [](std::string_view item, std::string_view part) {
    part = trim(part);
    if (base::equalsIgnoreAsciiCase(part, "first")) return Bound{1, false};
    if (base::equalsIgnoreAsciiCase(part, "last")) return Bound{0, true};
    Bound result;
    const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), result.number);
    if (part.empty() || error != std::errc() || end != part.data() + part.size()) {
      refuse(item, "is not a page number, a range such as 2-4, first, last or all");
    }
    if (result.number == 0) refuse(item, "names page 0; pages count from 1");
    return result;
  };

  PageSelection selection;
  selection.ranges_.clear();
  std::size_t start = 0;
  while (true) {
    const std::size_t comma = text.find(',', start);
    const std::string_view item =
        trim(text.substr(start, comma == std::string_view::npos ? std::string_view::npos
                                                                : comma - start));
    if (item.empty()) refuse(text, "has an empty item");
    if (base::equalsIgnoreAsciiCase(item, "all")) {
      selection.ranges_.push_back(Range{Bound{1, false}, Bound{0, true}});
    } else if (const std::size_t dash = item.find('-'); dash != std::string_view::npos) {
      const Range range{bound(item, item.substr(0, dash)), bound(item, item.substr(dash + 1))};
      const bool backwards = range.first.fromEnd ? !range.last.fromEnd
                                                 : !range.last.fromEnd &&
                                                       range.first.number > range.last.number;
      if (backwards) refuse(item, "ends before it begins");
      selection.ranges_.push_back(range);
    } else {
      const Bound page = bound(item, item);
      selection.ranges_.push_back(Range{page, page});
    }
    if (comma == std::string_view::npos) break;
    start = comma + 1;
  }
  return selection;
}

bool PageSelection::selects(std::uint32_t page, std::uint32_t pageCount) const {
  if (page == 0 || page > pageCount) return false;
  const auto resolve = [pageCount](const Bound& bound) {
    return bound.fromEnd ? pageCount : bound.number;
  };
  for (const Range& range : ranges_) {
    if (page >= resolve(range.first) && page <= resolve(range.last)) return true;
  }
  return false;
}

}  // namespace qent::dataextract
