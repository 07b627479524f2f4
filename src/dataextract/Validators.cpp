// Validators.cpp - check-digit arithmetic and date, address and number shape checks.
#include "dataextract/Validators.h"

#include "base/Unicode.h"

#include <array>
#include <cstdint>
#include <string>

namespace qent::dataextract {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isUpperLetter(char c) { return c >= 'A' && c <= 'Z'; }
bool isLetter(char c) { return isUpperLetter(c) || (c >= 'a' && c <= 'z'); }
char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// The text without blanks, dashes, dots and slashes, upper-cased.
std::string compact(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == ' ' || c == '-' || c == '.' || c == '/' || c == '\n' || c == '\t') continue;
    result += upper(c);
  }
  return result;
}

// Digits only, an "O" read for "0"; empty when anything else is left.
std::string digitsOf(std::string_view text) {
  std::string digits = compact(text);
  for (char& c : digits) {
    if (c == 'O') c = '0';
    if (!isDigit(c)) return {};
  }
  return digits;
}

// The fixed lengths of the IBANs of countries whose documents we mostly see; a pattern that
// took a word too many ("... 99 BIC") passes the mod 97 check once in 97 times, the length
// check never. Other countries: 15 to 34 characters.
std::size_t ibanLength(std::string_view country) {
  static constexpr std::pair<std::string_view, std::size_t> kLengths[] = {
      {"AT", 20}, {"BE", 16}, {"CH", 21}, {"CZ", 24}, {"DE", 22}, {"DK", 18}, {"ES", 24},
      {"FI", 18}, {"FR", 27}, {"GB", 22}, {"IE", 22}, {"IT", 27}, {"LI", 21}, {"LU", 20},
      {"NL", 18}, {"NO", 15}, {"PL", 28}, {"PT", 25}, {"SE", 24}};
  for (const auto& [code, length] : kLengths) {
    if (code == country) return length;
  }
  return 0;
}

bool ibanChecksum(const std::string& iban) {
  if (iban.size() < 15 || iban.size() > 34) return false;
  if (const std::size_t length = ibanLength(iban.substr(0, 2)); length != 0 && iban.size() != length) {
    return false;
  }
  if (!isUpperLetter(iban[0]) || !isUpperLetter(iban[1]) || !isDigit(iban[2]) || !isDigit(iban[3])) {
    return false;
  }
  // Country and check digits move to the end; letters count as 10..35; mod 97 piecewise.
  const std::string moved = iban.substr(4) + iban.substr(0, 4);
  std::uint32_t rest = 0;
  for (const char c : moved) {
    if (isDigit(c)) {
      rest = (rest * 10 + static_cast<std::uint32_t>(c - '0')) % 97;
    } else if (isUpperLetter(c)) {
      rest = (rest * 100 + static_cast<std::uint32_t>(c - 'A' + 10)) % 97;
    } else {
      return false;
    }
  }
  return rest == 1;
}

constexpr std::array<std::string_view, 24> kMonthNames{
    "januar", "februar", "märz", "april", "mai", "juni", "juli", "august", "september",
    "oktober", "november", "dezember", "january", "february", "march", "april", "may", "june",
    "july", "august", "september", "october", "november", "december"};

// 1..12 for a German or English month name or its abbreviation of three letters or more
// ("Sept", "Okt."); 0 otherwise.
int monthNamed(std::string_view word) {
  std::string lower = base::toLowerAscii(word);
  for (std::size_t at = lower.find("\xC3\x84"); at != std::string::npos; at = lower.find("\xC3\x84")) {
    lower.replace(at, 2, "\xC3\xA4");  // "MÄRZ"
  }
  if (!lower.empty() && lower.back() == '.') lower.pop_back();
  if (lower.size() < 3) return 0;
  for (std::size_t i = 0; i < kMonthNames.size(); ++i) {
    if (kMonthNames[i].rfind(lower, 0) == 0) return static_cast<int>(i % 12) + 1;
  }
  return 0;
}

bool realDate(int day, int month, int year) {
  if (year < 100) year += year < 50 ? 2000 : 1900;
  if (month < 1 || month > 12 || day < 1 || year < 1000 || year > 2999) return false;
  static constexpr std::array<int, 12> kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  const int last = month == 2 && leap ? 29 : kDays[static_cast<std::size_t>(month - 1)];
  return day <= last;
}

}  // namespace

std::optional<Validator> validatorNamed(std::string_view name) {
  static constexpr std::pair<std::string_view, Validator> kNames[] = {
      {"iban", Validator::Iban},   {"luhn", Validator::Luhn},     {"date", Validator::Date},
      {"email", Validator::Email}, {"taxid", Validator::TaxId},   {"pension", Validator::PensionNumber},
      {"bic", Validator::Bic},     {"phone", Validator::Phone}};
  for (const auto& [known, validator] : kNames) {
    if (name == known) return validator;
  }
  return std::nullopt;
}

const char* validatorNames() { return "iban, luhn, date, email, taxid, pension, bic, phone"; }

bool validate(Validator validator, std::string_view text) {
  switch (validator) {
    case Validator::None: return true;
    case Validator::Iban: return isValidIban(text);
    case Validator::Luhn: return passesLuhn(text);
    case Validator::Date: return isValidDate(text);
    case Validator::Email: return isValidEmail(text);
    case Validator::TaxId: return isValidTaxId(text);
    case Validator::PensionNumber: return isValidPensionNumber(text);
    case Validator::Bic: return isValidBic(text);
    case Validator::Phone: return isValidPhone(text);
  }
  return false;
}

bool isValidIban(std::string_view text) {
  std::string iban = compact(text);
  if (ibanChecksum(iban)) return true;
  // Check digits are always digits; a German account part is too.
  if (iban.size() < 4) return false;
  bool changed = false;
  const bool german = iban.rfind("DE", 0) == 0;
  for (std::size_t i = 2; i < iban.size() && (i < 4 || german); ++i) {
    if (iban[i] == 'O') {
      iban[i] = '0';
      changed = true;
    }
  }
  return changed && ibanChecksum(iban);
}

bool passesLuhn(std::string_view text) {
  const std::string digits = digitsOf(text);
  if (digits.size() < 12 || digits.size() > 19) return false;
  int sum = 0;
  bool twice = false;
  for (auto it = digits.rbegin(); it != digits.rend(); ++it) {
    int digit = *it - '0';
    if (twice) digit = digit * 2 > 9 ? digit * 2 - 9 : digit * 2;
    sum += digit;
    twice = !twice;
  }
  return sum % 10 == 0;
}

bool isValidDate(std::string_view text) {
  // Numbers and at most one month name, in the order written.
  std::array<int, 3> numbers{};
  std::array<std::size_t, 3> lengths{};
  std::size_t count = 0;
  int named = 0;
  std::size_t namedAt = 0;
  char separator = 0;
  std::size_t i = 0;
  while (i < text.size()) {
    const char c = text[i];
    if (isDigit(c) || c == 'O') {
      std::size_t end = i;
      int value = 0;
      while (end < text.size() && (isDigit(text[end]) || text[end] == 'O') && end - i < 5) {
        value = value * 10 + (text[end] == 'O' ? 0 : text[end] - '0');
        ++end;
      }
      if (count == 3) return false;
      numbers[count] = value;
      lengths[count++] = end - i;
      i = end;
    } else if (isLetter(c) || static_cast<unsigned char>(c) >= 0x80) {
      std::size_t end = i;
      while (end < text.size() && (isLetter(text[end]) || static_cast<unsigned char>(text[end]) >= 0x80)) {
        ++end;
      }
      if (named != 0) return false;
      named = monthNamed(text.substr(i, end - i));
      if (named == 0) return false;
      namedAt = count;
      i = end;
    } else {
      if ((c == '.' || c == '/' || c == '-') && separator == 0) separator = c;
      ++i;
    }
  }
  if (named != 0) {
    // "14. März 2026", "14 March 2026" (day first) or "March 14, 2026" (month first).
    if (count != 2 || lengths[1] < 2 || (namedAt != 0 && namedAt != 1)) return false;
    return realDate(numbers[0], named, numbers[1]);
  }
  if (count != 3) return false;
  if (lengths[0] == 4) return realDate(numbers[2], numbers[1], numbers[0]);  // ISO 8601
  if (lengths[2] != 2 && lengths[2] != 4) return false;
  // With slashes both the British and the American order occur.
  return realDate(numbers[0], numbers[1], numbers[2]) ||
         (separator == '/' && realDate(numbers[1], numbers[0], numbers[2]));
}

bool isValidEmail(std::string_view whole) {
  // OCR sets blanks around the "@" now and then; the pattern allows them.
  std::string joined;
  for (const char c : whole) {
    if (c != ' ') joined += c;
  }
  const std::string_view text(joined);
  const std::size_t at = text.find('@');
  if (at == 0 || at == std::string_view::npos || at > 64 || text.find('@', at + 1) != std::string_view::npos) {
    return false;
  }
  const std::string_view local = text.substr(0, at);
  const std::string_view domain = text.substr(at + 1);
  if (local.front() == '.' || local.back() == '.' || local.find("..") != std::string_view::npos) {
    return false;
  }
  for (const char c : local) {
    if (!isLetter(c) && !isDigit(c) && std::string_view(".!#$%&'*+/=?^_`{|}~-").find(c) == std::string_view::npos) {
      return false;
    }
  }
  // Labels of letters, digits and inner hyphens; a top-level label of two letters or more.
  std::size_t labelStart = 0;
  std::size_t labels = 0;
  for (std::size_t i = 0; i <= domain.size(); ++i) {
    if (i < domain.size() && domain[i] != '.') {
      if (!isLetter(domain[i]) && !isDigit(domain[i]) && domain[i] != '-') return false;
      continue;
    }
    const std::string_view label = domain.substr(labelStart, i - labelStart);
    if (label.empty() || label.size() > 63 || label.front() == '-' || label.back() == '-') return false;
    ++labels;
    if (i == domain.size()) {
      if (label.size() < 2) return false;
      for (const char c : label) {
        if (!isLetter(c)) return false;
      }
    }
    labelStart = i + 1;
  }
  return labels >= 2;
}

bool isValidTaxId(std::string_view text) {
  const std::string digits = digitsOf(text);
  if (digits.size() != 11 || digits[0] == '0') return false;
  std::array<int, 10> seen{};
  for (std::size_t i = 0; i < 10; ++i) ++seen[static_cast<std::size_t>(digits[i] - '0')];
  int repeated = 0;
  for (const int n : seen) {
    if (n > 3) return false;
    if (n > 1) ++repeated;
  }
  if (repeated != 1) return false;
  int product = 10;
  for (std::size_t i = 0; i < 10; ++i) {
    int sum = (digits[i] - '0' + product) % 10;
    if (sum == 0) sum = 10;
    product = (sum * 2) % 11;
  }
  const int check = (11 - product) % 10;
  return check == digits[10] - '0';
}

bool isValidPensionNumber(std::string_view text) {
  std::string number = compact(text);
  if (number.size() != 12 || !isUpperLetter(number[8])) return false;
  for (std::size_t i = 0; i < 12; ++i) {
    if (i == 8) continue;
    if (number[i] == 'O') number[i] = '0';
    if (!isDigit(number[i])) return false;
  }
  const int day = (number[2] - '0') * 10 + (number[3] - '0');
  const int month = (number[4] - '0') * 10 + (number[5] - '0');
  // Days above 31 mark numbers given without a known birth day; the month is always real.
  if (day < 1 || day > 31 + 31 || month < 1 || month > 12) return false;
  // The letter counts as its two-digit place in the alphabet; digit sums of the products.
  const int letter = number[8] - 'A' + 1;
  const std::array<int, 12> digits{number[0] - '0', number[1] - '0', number[2] - '0',
                                   number[3] - '0', number[4] - '0', number[5] - '0',
                                   number[6] - '0', number[7] - '0', letter / 10,
                                   letter % 10,     number[9] - '0', number[10] - '0'};
  static constexpr std::array<int, 12> kWeights{2, 1, 2, 5, 7, 1, 2, 1, 2, 1, 2, 1};
  int sum = 0;
  for (std::size_t i = 0; i < 12; ++i) {
    const int product = digits[i] * kWeights[i];
    sum += product / 10 + product % 10;
  }
  return sum % 10 == number[11] - '0';
}

bool isValidBic(std::string_view text) {
  const std::string_view kCountries =
      "AD AE AL AM AO AR AT AU AZ BA BE BG BH BR BY CA CH CL CN CO CR CY CZ DE DK DO DZ EE EG "
      "ES FI FO FR GB GE GI GL GR GT HK HR HU ID IE IL IN IQ IS IT JO JP KE KR KW KZ LB LI LT "
      "LU LV MA MC MD ME MK MT MU MX MY NG NL NO NZ PH PK PL PS PT QA RO RS RU SA SC SE SG SI "
      "SK SM TH TN TR TW UA US UY VA VG VN XK ZA";
  const std::string code(text);
  if (code.size() != 8 && code.size() != 11) return false;
  for (std::size_t i = 0; i < code.size(); ++i) {
    const bool ok = i < 6 ? isUpperLetter(code[i]) : isUpperLetter(code[i]) || isDigit(code[i]);
    if (!ok) return false;
  }
  return kCountries.find(code.substr(4, 2)) != std::string_view::npos;
}

bool isValidPhone(std::string_view text) {
  std::size_t digits = 0;
  for (const char c : text) {
    if (isDigit(c)) {
      ++digits;
    } else if (std::string_view(" +()/-.\n").find(c) == std::string_view::npos) {
      return false;
    }
  }
  return digits >= 7 && digits <= 15;
}

}  // namespace qent::dataextract
