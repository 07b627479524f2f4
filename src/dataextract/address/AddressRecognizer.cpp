// AddressRecognizer.cpp - candidate blocks scored and the best recipient and sender chosen.
#include "dataextract/address/AddressRecognizer.h"

#include "base/Unicode.h"
#include "dataextract/address/AddressGrammar.h"
#include "dataextract/address/LetterLines.h"
#include "dataextract/address/LetterZones.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace qent::dataextract {

namespace {

using text::layout::Rect;

// Sender and recipient blocks are at most this long: a letterhead with company, street,
// town, phone, fax, e-mail, web, and registration or bank lines.
constexpr std::size_t kLongestBlock = 10;
// No address line is longer, not even a return address; longer lines (running text, a
// line that swallowed a table row) end a run before the grammar reads them, which also
// keeps the cost of a page with huge lines linear.
constexpr std::size_t kLongestLine = 200;

struct Candidate {
  AddressFields fields;
  const LetterPage* page = nullptr;
  std::size_t block = 0;  // index into page->blocks
  std::size_t first = 0;  // position inside the block
  std::size_t count = 0;
  Rect rect;
  double score = 0;
};

Rect rectOf(const LetterPage& page, const std::vector<std::size_t>& lines) {
  Rect all;
  for (std::size_t i : lines) {
    const Rect& r = page.lines[i].rect;
    if (!r.hasGeometry()) continue;
    if (!all.hasGeometry()) {
      all = r;
      continue;
    }
    const std::int64_t left = std::min(all.left, r.left), top = std::min(all.top, r.top);
    const std::int64_t right = std::max(all.right(), r.right()), bottom = std::max(all.bottom(), r.bottom());
    all = Rect{static_cast<std::int32_t>(left), static_cast<std::int32_t>(top),
               static_cast<std::int32_t>(right - left), static_cast<std::int32_t>(bottom - top)};
  }
  return all;
}

// Every run of up to kLongestBlock lines of every block, handed to `visit` with its texts.
template <class Visit>
void forEachRun(const std::vector<LetterPage>& pages, Visit&& visit) {
  for (const LetterPage& page : pages) {
    for (std::size_t b = 0; b < page.blocks.size(); ++b) {
      const auto& block = page.blocks[b];
      for (std::size_t first = 0; first < block.size(); ++first) {
        std::vector<std::u16string> texts;
        for (std::size_t count = 1; count <= kLongestBlock && first + count <= block.size(); ++count) {
          const std::u16string& text = page.lines[block[first + count - 1]].text;
          if (text.size() > kLongestLine) break;
          texts.push_back(text);
          visit(page, b, first, count, texts);
        }
      }
    }
  }
}

Candidate candidateOf(AddressFields fields, const LetterPage& page, std::size_t block,
                      std::size_t first, std::size_t count) {
  const auto& lines = page.blocks[block];
  const std::vector<std::size_t> run(lines.begin() + static_cast<std::ptrdiff_t>(first),
                                     lines.begin() + static_cast<std::ptrdiff_t>(first + count));
  return Candidate{std::move(fields), &page, block, first, count, rectOf(page, run), 0};
}

// Scores are compared as they are reported, to two decimals, so that a country line under
// a block is not lost to a rounding difference of the window share.
double reported(double score) { return std::round(std::min(score, 1.0) * 100) / 100; }

// Better score wins; on a tie the longer block, then the earlier one.
bool better(const Candidate& a, const std::optional<Candidate>& b) {
  if (!b) return true;
  if (a.score != b->score) return a.score > b->score;
  return a.count > b->count;
}

bool shareLines(const Candidate& a, const Candidate& b) {
  return a.page == b.page && a.block == b.block && a.first < b.first + b.count &&
         b.first < a.first + a.count;
}

// The grammar makes a recipient; the window makes it likely; each name line above the
// street (up to three) makes the block more complete.
std::optional<Candidate> bestRecipient(const std::vector<LetterPage>& pages) {
  std::optional<Candidate> best;
  forEachRun(pages, [&](const LetterPage& page, std::size_t block, std::size_t first,
                        std::size_t count, const std::vector<std::u16string>& texts) {
    if (count < 2) return;
    auto fields = parseRecipientBlock(texts);
    if (!fields) return;
    Candidate candidate = candidateOf(std::move(*fields), page, block, first, count);
    const double window = windowShare(candidate.rect, page.width, page.height);
    const double names = static_cast<double>(std::min<std::size_t>(candidate.fields.nameLines, 3));
    candidate.score = reported(0.55 + 0.35 * window + 0.03 * names);
    if (better(candidate, best)) best = std::move(candidate);
  });
  return best;
}

// A one-line return address right above the recipient's block.
bool rightAbove(const Rect& line, const std::optional<Candidate>& recipient) {
  if (!recipient || !line.hasGeometry() || !recipient->rect.hasGeometry()) return false;
  const std::int64_t gap = recipient->rect.top - line.bottom();
  return gap >= -line.height / 2 && gap <= 3 * std::int64_t{line.height} &&
         line.left < recipient->rect.right() && recipient->rect.left < line.right();
}

// A letterhead or footer with contact data is the surest sender, then the return address
// over the window, then a plain address at the top of the page.
std::optional<Candidate> bestSender(const std::vector<LetterPage>& pages,
                                    const std::optional<Candidate>& recipient) {
  std::optional<Candidate> best;
  forEachRun(pages, [&](const LetterPage& page, std::size_t block, std::size_t first,
                        std::size_t count, const std::vector<std::u16string>& texts) {
    double score = 0;
    std::optional<AddressFields> fields;
    if (count == 1) {
      fields = parseSenderLine(texts.front());
      if (fields) {
        const Rect& line = page.lines[page.blocks[block][first]].rect;
        score = 0.6 + (rightAbove(line, recipient) ? 0.3 : 0.0);
      }
    } else if ((fields = parseSenderBlock(texts))) {
      score = 0.7 + 0.005 * static_cast<double>(count);
    } else if ((fields = parseRecipientBlock(texts))) {
      score = 0.45;
    }
    if (!fields) return;
    Candidate candidate = candidateOf(std::move(*fields), page, block, first, count);
    if (recipient && shareLines(candidate, *recipient)) return;
    if (count > 1 && inLetterheadOrFooter(candidate.rect, page.height)) score += 0.2;
    candidate.score = reported(score);
    if (better(candidate, best)) best = std::move(candidate);
  });
  return best;
}

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

void writeText(JsonWriter& out, const char* key, const std::u16string& value) {
  out.Key(key);
  if (value.empty()) {
    out.Null();
  } else {
    const std::string utf8 = base::utf16ToUtf8(value);
    out.String(utf8.data(), static_cast<rapidjson::SizeType>(utf8.size()));
  }
}

void writeCandidate(JsonWriter& out, const std::optional<Candidate>& candidate, bool contact) {
  if (!candidate) {
    out.Null();
    return;
  }
  const AddressFields& f = candidate->fields;
  const bool placed = candidate->rect.hasGeometry();
  out.StartObject();
  writeText(out, "company", f.company);
  out.Key("confidence");
  out.Double(candidate->score);
  writeText(out, "country", f.country);
  if (contact) writeText(out, "email", f.email);
  writeText(out, "houseNumber", f.houseNumber);
  out.Key("lines");
  out.StartArray();
  for (const std::u16string& line : f.lines) {
    const std::string utf8 = base::utf16ToUtf8(line);
    out.String(utf8.data(), static_cast<rapidjson::SizeType>(utf8.size()));
  }
  out.EndArray();
  writeText(out, "name", f.name);
  out.Key("page");
  if (placed) {
    out.Uint(candidate->page->number);
  } else {
    out.Null();
  }
  if (contact) writeText(out, "phone", f.phone);
  writeText(out, "postalCode", f.postalCode);
  out.Key("rect");
  if (placed) {
    const Rect& r = candidate->rect;
    out.StartObject();
    out.Key("height");
    out.Int(r.height);
    out.Key("left");
    out.Int(r.left);
    out.Key("top");
    out.Int(r.top);
    out.Key("width");
    out.Int(r.width);
    out.EndObject();
  } else {
    out.Null();
  }
  writeText(out, "street", f.street);
  writeText(out, "town", f.town);
  if (contact) writeText(out, "web", f.web);
  out.EndObject();
}

std::string recognize(const std::vector<LetterPage>& pages) {
  const std::optional<Candidate> recipient = bestRecipient(pages);
  const std::optional<Candidate> sender = bestSender(pages, recipient);
  rapidjson::StringBuffer buffer;
  JsonWriter out(buffer);
  out.StartObject();
  out.Key("recipient");
  writeCandidate(out, recipient, false);
  out.Key("sender");
  writeCandidate(out, sender, true);
  out.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize());
}

}  // namespace

bool isRecipientText(std::u16string_view text) {
  return parseRecipientBlock(addressLines(text)).has_value();
}

bool isSenderText(std::u16string_view text) { return parseSender(addressLines(text)).has_value(); }

std::string recognizeAddresses(text::layout::Node& root) { return recognize(letterPagesOf(root)); }

std::string recognizeAddressesInText(std::u16string_view text) {
  return recognize({letterPageOfText(text)});
}

}  // namespace qent::dataextract
