// AddressGrammar.cpp - which lines are postal, street, country, contact and name lines, and
// how they make up recipient and sender blocks.
#include "dataextract/address/AddressGrammar.h"

#include <algorithm>
#include <array>

namespace qent::dataextract {

namespace {

using std::u16string;
using std::u16string_view;

bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool isUpper(char16_t c) { return c >= u'A' && c <= u'Z'; }
// Letters of the scripts these countries write in: ASCII and Latin-1/Latin Extended,
// leaving out the multiplication and division signs and the punctuation above U+2000.
bool isLetter(char16_t c) {
  return (c >= u'a' && c <= u'z') || isUpper(c) ||
         (c >= 0xC0 && c < 0x2000 && c != 0xD7 && c != 0xF7);
}
bool isSpace(char16_t c) { return c == u' ' || c == u'\t' || c == 0xA0 || c == 0x202F; }

// Lower case for ASCII and Latin-1 letters, enough to compare keywords and country names.
u16string lower(u16string_view text) {
  u16string out(text);
  for (char16_t& c : out) {
    if (isUpper(c) || (c >= 0xC0 && c <= 0xDE && c != 0xD7)) c = static_cast<char16_t>(c + 0x20);
  }
  return out;
}

std::vector<u16string_view> words(u16string_view line) {
  std::vector<u16string_view> out;
  std::size_t i = 0;
  while (i < line.size()) {
    while (i < line.size() && line[i] == u' ') ++i;
    std::size_t j = i;
    while (j < line.size() && line[j] != u' ') ++j;
    if (j > i) out.push_back(line.substr(i, j - i));
    i = j;
  }
  return out;
}

u16string_view trim(u16string_view text) {
  while (!text.empty() && (isSpace(text.front()) || text.front() == u',')) text.remove_prefix(1);
  while (!text.empty() && (isSpace(text.back()) || text.back() == u',')) text.remove_suffix(1);
  return text;
}

std::size_t countIf(u16string_view text, bool (*test)(char16_t)) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), test));
}

// A word without the punctuation that often follows it ("Tel.:", "GmbH,").
u16string bareLower(u16string_view word) {
  while (!word.empty() && (word.back() == u'.' || word.back() == u':' || word.back() == u',')) {
    word.remove_suffix(1);
  }
  return lower(word);
}

bool startsWithLower(const u16string& lowered, u16string_view prefix) {
  return lowered.compare(0, prefix.size(), prefix) == 0;
}

// Town names: letters with spaces, dots, hyphens, apostrophes, slashes and parentheses
// ("Frankfurt am Main", "Halle (Saale)", "St. Gallen"), never a digit.
bool isTownText(u16string_view text) {
  if (text.empty() || text.size() > 40 || !isLetter(text.front())) return false;
  for (char16_t c : text) {
    if (!isLetter(c) && c != u' ' && c != u'.' && c != u'-' && c != u'\'' && c != u'(' &&
        c != u')' && c != u'/') {
      return false;
    }
  }
  return words(text).size() <= 5;
}

struct Postal {
  u16string code;
  u16string town;  // empty when the town stands on the line above (UK)
};

bool isDigits(u16string_view text, std::size_t count) {
  return text.size() == count && countIf(text, isDigit) == count;
}

constexpr std::array<u16string_view, 51> kStates = {
    u"AL", u"AK", u"AZ", u"AR", u"CA", u"CO", u"CT", u"DE", u"FL", u"GA", u"HI", u"ID", u"IL",
    u"IN", u"IA", u"KS", u"KY", u"LA", u"ME", u"MD", u"MA", u"MI", u"MN", u"MS", u"MO", u"MT",
    u"NE", u"NV", u"NH", u"NJ", u"NM", u"NY", u"NC", u"ND", u"OH", u"OK", u"OR", u"PA", u"RI",
    u"SC", u"SD", u"TN", u"TX", u"UT", u"VT", u"VA", u"WA", u"WV", u"WI", u"WY", u"DC"};

// "12345 Berlin", "D-12345 Berlin", "1010 Wien", "A-1010 Wien", "CH-8001 Zürich".
std::optional<Postal> continentalPostal(u16string_view line) {
  for (u16string_view prefix : {u16string_view(u"D-"), u16string_view(u"A-"),
                                u16string_view(u"CH-")}) {
    if (line.substr(0, prefix.size()) == prefix) {
      line.remove_prefix(prefix.size());
      break;
    }
  }
  std::size_t digits = 0;
  while (digits < line.size() && isDigit(line[digits])) ++digits;
  if ((digits != 4 && digits != 5) || digits >= line.size() || line[digits] != u' ') {
    return std::nullopt;
  }
  const u16string_view town = trim(line.substr(digits + 1));
  if (!isTownText(town)) return std::nullopt;
  return Postal{u16string(line.substr(0, digits)), u16string(town)};
}

// "Springfield, IL 62701" or "Springfield IL 62701-1234".
std::optional<Postal> usPostal(u16string_view line) {
  const auto parts = words(line);
  if (parts.size() < 3) return std::nullopt;
  const u16string_view zip = parts.back();
  const bool zipOk = isDigits(zip, 5) || (zip.size() == 10 && isDigits(zip.substr(0, 5), 5) &&
                                          zip[5] == u'-' && isDigits(zip.substr(6), 4));
  const u16string_view state = parts[parts.size() - 2];
  if (!zipOk || std::find(kStates.begin(), kStates.end(), state) == kStates.end()) {
    return std::nullopt;
  }
  const std::size_t townEnd = static_cast<std::size_t>(state.data() - line.data());
  const u16string_view town = trim(line.substr(0, townEnd));
  if (!isTownText(town)) return std::nullopt;
  return Postal{u16string(zip), u16string(town)};
}

// The outward ("SW1A", "M1", "EC1V") and inward ("2AA") parts of a UK postcode.
bool isOutwardCode(u16string_view w) {
  std::size_t i = 0;
  while (i < w.size() && i < 2 && isUpper(w[i])) ++i;
  if (i == 0 || i >= w.size() || !isDigit(w[i])) return false;
  ++i;
  if (i < w.size() && (isDigit(w[i]) || isUpper(w[i]))) ++i;
  return i == w.size();
}
// The letter an OCR engine most often reads as this digit or bracket, where a letter must
// stand ("8X]" for "8XJ", "0" for "O"); 0 when there is none.
char16_t letterFor(char16_t c) {
  switch (c) {
    case u'0': return u'O';
    case u'1': case u'|': return u'I';
    case u'5': return u'S';
    case u'8': return u'B';
    case u')': case u']': return u'J';
    default: return isUpper(c) ? c : 0;
  }
}

bool isInwardCode(u16string_view w) {
  return w.size() == 3 && isDigit(w[0]) && letterFor(w[1]) != 0 && letterFor(w[2]) != 0;
}

// "London SW1A 2AA", "LONDON SW1A 2AA" or the postcode alone under the town.
std::optional<Postal> ukPostal(u16string_view line) {
  const auto parts = words(line);
  if (parts.size() < 2) return std::nullopt;
  const u16string_view outward = parts[parts.size() - 2];
  const u16string_view inward = parts.back();
  if (!isOutwardCode(outward) || !isInwardCode(inward)) return std::nullopt;
  const std::size_t townEnd = static_cast<std::size_t>(outward.data() - line.data());
  const u16string_view town = trim(line.substr(0, townEnd));
  if (!town.empty() && !isTownText(town)) return std::nullopt;
  u16string code(outward);
  code += u' ';
  code += inward[0];
  code += letterFor(inward[1]);
  code += letterFor(inward[2]);
  return Postal{std::move(code), u16string(town)};
}

std::optional<Postal> parsePostal(u16string_view line) {
  if (auto postal = continentalPostal(line)) return postal;
  if (auto postal = usPostal(line)) return postal;
  return ukPostal(line);
}

struct Street {
  u16string street;
  u16string number;
};

// "12", "12a", "12-14", "3/1".
bool isHouseNumber(u16string_view w) {
  std::size_t i = 0;
  while (i < w.size() && isDigit(w[i])) ++i;
  if (i == 0 || i > 4) return false;
  if (i < w.size() && (w[i] == u'-' || w[i] == u'/')) {
    const std::size_t start = ++i;
    while (i < w.size() && isDigit(w[i])) ++i;
    if (i == start) return false;
  }
  if (i < w.size() && ((w[i] >= u'a' && w[i] <= u'z') || isUpper(w[i]))) ++i;
  return i == w.size();
}

bool isStreetName(u16string_view text) {
  return !text.empty() && isLetter(text.front()) && countIf(text, isLetter) >= 3 &&
         words(text).size() <= 6 && text.find(u'@') == u16string_view::npos;
}

std::optional<Street> postBox(u16string_view line) {
  const u16string lowered = lower(line);
  for (u16string_view keyword : {u16string_view(u"postfach"), u16string_view(u"post office box"),
                                 u16string_view(u"p.o. box"), u16string_view(u"po box")}) {
    if (!startsWithLower(lowered, keyword)) continue;
    const u16string_view number = trim(line.substr(keyword.size()));
    if (number.empty() || !isDigit(number.front())) return std::nullopt;
    for (char16_t c : number) {
      if (!isDigit(c) && c != u' ') return std::nullopt;
    }
    return Street{u16string(line.substr(0, keyword.size())), u16string(number)};
  }
  return std::nullopt;
}

std::optional<Street> parseStreet(u16string_view line) {
  if (auto box = postBox(line)) return box;
  const auto parts = words(line);
  if (parts.size() < 2) return std::nullopt;
  // German order: "Hauptstraße 12a", also "Hauptstraße 12 a".
  std::size_t numberStart = parts.size() - 1;
  if (parts.back().size() == 1 && parts.back()[0] >= u'a' && parts.back()[0] <= u'z' &&
      parts.size() >= 3) {
    numberStart = parts.size() - 2;
  }
  const u16string_view last = parts[numberStart];
  if (isHouseNumber(last) && (numberStart + 1 == parts.size() || countIf(last, isLetter) == 0)) {
    const std::size_t split = static_cast<std::size_t>(last.data() - line.data());
    const u16string_view street = trim(line.substr(0, split));
    if (isStreetName(street)) return Street{u16string(street), u16string(line.substr(split))};
  }
  // English order: "12 High Street", "1600 Pennsylvania Avenue NW".
  if (isHouseNumber(parts.front())) {
    const u16string_view street = trim(line.substr(parts.front().size()));
    if (isStreetName(street) && countIf(street, isDigit) == 0) {
      return Street{u16string(street), u16string(parts.front())};
    }
  }
  return std::nullopt;
}

constexpr std::array<u16string_view, 21> kCountries = {
    u"deutschland", u"germany", u"bundesrepublik deutschland", u"österreich", u"austria",
    u"schweiz", u"switzerland", u"suisse", u"svizzera", u"united kingdom", u"uk", u"u.k",
    u"great britain", u"england", u"scotland", u"wales", u"northern ireland", u"usa", u"u.s.a",
    u"united states", u"united states of america"};

bool isCountry(u16string_view line) {
  const u16string lowered = bareLower(line);
  return std::find(kCountries.begin(), kCountries.end(), lowered) != kCountries.end();
}

constexpr std::array<u16string_view, 33> kContactWords = {
    u"tel", u"tel.", u"telefon", u"telephone", u"phone", u"fon", u"fax", u"telefax", u"mobil",
    u"mobile", u"mob", u"e-mail", u"email", u"mail", u"web", u"internet", u"iban", u"bic",
    u"swift", u"ust-idnr", u"ust-id", u"ust", u"vat", u"steuernummer", u"amtsgericht", u"hrb",
    u"registergericht", u"geschäftsführer", u"geschäftsführung", u"registered", u"bank",
    u"sparkasse", u"blz"};

// The first word as a contact keyword: "Tel.", "E-Mail:", and the one-letter "T:" forms.
bool startsWithContactWord(u16string_view line) {
  const auto parts = words(line);
  if (parts.empty()) return false;
  const u16string first = bareLower(parts.front());
  if (first.size() == 1) {
    return parts.front().size() == 2 && parts.front()[1] == u':' &&
           u16string_view(u"tfew").find(first[0]) != u16string_view::npos;
  }
  return std::find(kContactWords.begin(), kContactWords.end(), first) != kContactWords.end();
}

bool isPhoneLine(u16string_view line) {
  static constexpr std::array<u16string_view, 9> kPhone = {
      u"tel", u"telefon", u"telephone", u"phone", u"fon", u"mobil", u"mobile", u"mob", u"t"};
  const auto parts = words(line);
  if (parts.empty()) return false;
  if (parts.front().front() == u'+') return true;
  const u16string first = bareLower(parts.front());
  return std::find(kPhone.begin(), kPhone.end(), first) != kPhone.end();
}

// Salutations stand before the name or on a line of their own ("Herrn" / "Max Müller").
constexpr std::array<u16string_view, 14> kSalutations = {
    u"herrn", u"herr", u"frau", u"familie", u"mr", u"mrs", u"ms", u"miss", u"messrs",
    u"dear", u"an", u"to", u"firma", u"mx"};

constexpr std::array<u16string_view, 6> kAttention = {u"z. hd. ", u"z.hd. ", u"zu händen ",
                                                       u"attn: ", u"attn. ", u"fao "};

bool isSalutationOnly(u16string_view line) {
  const auto parts = words(line);
  return parts.size() == 1 &&
         std::find(kSalutations.begin(), kSalutations.end(), bareLower(parts.front())) !=
             kSalutations.end();
}

// The person named by a line, without attention mark and salutation.
u16string personName(u16string_view line) {
  const u16string lowered = lower(line);
  for (u16string_view mark : kAttention) {
    if (startsWithLower(lowered, mark)) {
      line.remove_prefix(mark.size());
      break;
    }
  }
  const auto parts = words(line);
  if (parts.size() >= 2 && std::find(kSalutations.begin(), kSalutations.end(),
                                     bareLower(parts.front())) != kSalutations.end()) {
    line = trim(line.substr(static_cast<std::size_t>(parts[1].data() - line.data())));
  }
  return u16string(line);
}

constexpr std::array<u16string_view, 22> kLegalForms = {
    u"gmbh", u"ag", u"kg", u"ohg", u"gbr", u"ug", u"se", u"eg", u"e.v", u"mbh", u"gesmbh",
    u"ltd", u"limited", u"plc", u"llp", u"llc", u"inc", u"corp", u"corporation", u"co",
    u"sàrl", u"sa"};

constexpr std::array<u16string_view, 6> kDepartments = {
    u"abteilung", u"abt", u"department", u"dept", u"buchhaltung", u"einkauf"};

// A department under the company ("Abteilung Einkauf", "Accounts Department") is neither
// the company nor the person.
bool isDepartmentLine(u16string_view line) {
  for (u16string_view word : words(line)) {
    if (std::find(kDepartments.begin(), kDepartments.end(), bareLower(word)) != kDepartments.end()) {
      return true;
    }
  }
  return false;
}

bool isCompanyLine(u16string_view line) {
  for (u16string_view word : words(line)) {
    if (std::find(kLegalForms.begin(), kLegalForms.end(), bareLower(word)) != kLegalForms.end()) {
      return true;
    }
  }
  return false;
}

// Separators of a one-line return address, most specific first.
constexpr std::array<u16string_view, 5> kSenderSeparators = {u"\u00B7", u"|", u"\u2022", u" - ",
                                                             u","};

// Only the three dot and bar separators: hyphens and commas occur in names too.
bool hasSenderSeparator(u16string_view line) {
  for (std::size_t i = 0; i < 3; ++i) {
    if (line.find(kSenderSeparators[i]) != u16string_view::npos) return true;
  }
  return false;
}

// A line that may stand before the street: a name, a company, a department.
bool isNameLine(u16string_view line) {
  return countIf(line, isLetter) >= 2 && line.size() <= 60 && countIf(line, isDigit) <= 2 &&
         words(line).size() <= 8 && line.back() != u':' && !hasSenderSeparator(line) &&
         !isContactLine(line) && !isCountry(line) && !parsePostal(line) && !parseStreet(line);
}

std::vector<u16string> split(u16string_view line, u16string_view separator) {
  std::vector<u16string> parts;
  std::size_t start = 0;
  while (start <= line.size()) {
    const std::size_t at = std::min(line.find(separator, start), line.size());
    const u16string_view part = trim(line.substr(start, at - start));
    if (!part.empty()) parts.emplace_back(part);
    start = at + separator.size();
  }
  return parts;
}

// "ST 12345": the state and ZIP code of a US town split off at a comma.
bool isStateAndZip(u16string_view part) {
  const auto parts = words(part);
  return parts.size() == 2 && std::find(kStates.begin(), kStates.end(), parts[0]) != kStates.end() &&
         (isDigits(parts[1], 5) || parts[1].size() == 10);
}

void addContact(AddressFields& fields, u16string_view line) {
  for (u16string_view word : words(line)) {
    if (word.find(u'@') != u16string_view::npos && fields.email.empty()) {
      fields.email = trim(word);
    } else if ((startsWithLower(lower(word), u"www.") || startsWithLower(lower(word), u"http")) &&
               fields.web.empty()) {
      fields.web = trim(word);
    }
  }
  if (isPhoneLine(line) && fields.phone.empty()) {
    u16string_view number = line;
    if (number.front() != u'+') number.remove_prefix(words(line).front().size());
    while (!number.empty() && (number.front() == u' ' || number.front() == u':' ||
                               number.front() == u'.')) {
      number.remove_prefix(1);
    }
    fields.phone = number;
  }
}

}  // namespace

bool isContactLine(u16string_view line) {
  return line.find(u'@') != u16string_view::npos || startsWithLower(lower(line), u"www.") ||
         lower(line).find(u"http") != u16string::npos || startsWithContactWord(line) ||
         (!line.empty() && line.front() == u'+');
}

std::optional<AddressFields> parseRecipientBlock(const std::vector<u16string>& lines) {
  const std::size_t n = lines.size();
  if (n < 2 || n > 7) return std::nullopt;
  AddressFields fields;
  std::size_t end = n;
  if (n >= 3 && isCountry(lines[n - 1])) fields.country = lines[--end];
  std::size_t at = end - 1;
  const auto postal = parsePostal(lines[at]);
  if (!postal) return std::nullopt;
  fields.postalCode = postal->code;
  fields.town = postal->town;
  if (fields.town.empty()) {
    if (at == 0 || !isTownText(lines[at - 1]) || parseStreet(lines[at - 1])) return std::nullopt;
    fields.town = lines[--at];
  }
  if (at == 0) return std::nullopt;
  const std::size_t streetAt = at - 1;
  const auto street = parseStreet(lines[streetAt]);
  if (!street) return std::nullopt;
  fields.street = street->street;
  fields.houseNumber = street->number;
  for (std::size_t i = 0; i < streetAt; ++i) {
    const u16string& line = lines[i];
    if (isSalutationOnly(line)) continue;
    if (!isNameLine(line)) return std::nullopt;
    if (isCompanyLine(line)) {
      if (fields.company.empty()) fields.company = line;
    } else if (fields.name.empty() && !isDepartmentLine(line)) {
      fields.name = personName(line);
    }
  }
  fields.nameLines = streetAt;
  fields.lines = lines;
  return fields;
}

std::optional<AddressFields> parseSenderLine(u16string_view original) {
  // OCR engines read the small middle dot of a return address as "«", "»", "+" or "*";
  // none of these stands in a postal address, so they separate as the dot does.
  u16string line(original);
  for (char16_t& c : line) {
    if (c == u'\u00AB' || c == u'\u00BB' || c == u'+' || c == u'*') c = u'\u00B7';
  }
  for (u16string_view separator : kSenderSeparators) {
    if (line.find(separator) == u16string_view::npos) continue;
    std::vector<u16string> parts = split(line, separator);
    if (separator == u",") {
      // "Springfield, IL 62701" was split in two; join it again.
      for (std::size_t i = 1; i < parts.size(); ++i) {
        if (isStateAndZip(parts[i])) {
          parts[i - 1] += u", ";
          parts[i - 1] += parts[i];
          parts.erase(parts.begin() + static_cast<std::ptrdiff_t>(i));
          break;
        }
      }
    }
    auto fields = parseRecipientBlock(parts);
    if (!fields || fields->nameLines == 0) return std::nullopt;
    fields->lines = {u16string(original)};
    return fields;
  }
  return std::nullopt;
}

std::optional<AddressFields> parseSenderBlock(const std::vector<u16string>& lines) {
  const auto firstContact = std::find_if(lines.begin(), lines.end(),
                                         [](const u16string& line) { return isContactLine(line); });
  if (firstContact == lines.end()) return std::nullopt;
  auto fields = parseRecipientBlock(std::vector<u16string>(lines.begin(), firstContact));
  if (!fields) return std::nullopt;
  for (auto it = firstContact; it != lines.end(); ++it) {
    if (!isContactLine(*it)) return std::nullopt;
    addContact(*fields, *it);
  }
  fields->lines = lines;
  return fields;
}

std::optional<AddressFields> parseSender(const std::vector<u16string>& lines) {
  if (lines.size() == 1) return parseSenderLine(lines.front());
  return parseSenderBlock(lines);
}

std::vector<u16string> addressLines(u16string_view text) {
  std::vector<u16string> lines;
  u16string line;
  auto flush = [&] {
    if (!line.empty() && line.back() == u' ') line.pop_back();
    if (!line.empty()) lines.push_back(std::move(line));
    line.clear();
  };
  for (char16_t c : text) {
    if (c == u'\n' || c == u'\r' || c == u'\v' || c == u'\f' || c == 0x2028) {
      flush();
    } else if (isSpace(c)) {
      if (!line.empty() && line.back() != u' ') line.push_back(u' ');
    } else {
      line.push_back(c);
    }
  }
  flush();
  return lines;
}

}  // namespace qent::dataextract
