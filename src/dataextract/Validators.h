// Validators.h - the checks an entity match must pass besides its pattern: check digits,
// real calendar dates, well-formed addresses.
//
// Each takes the matched text as written in the document (UTF-8, with the blanks, dashes or
// dots that separate its groups) and ignores those separators. OCR reads "0" as "O" now
// and then; where a position can only hold a digit, an "O" there counts as "0", so a
// recognition error does not let sensitive data through.
#pragma once

#include <optional>
#include <string_view>

namespace qent::dataextract {

enum class Validator { None, Iban, Luhn, Date, Email, TaxId, PensionNumber, Bic, Phone };

// The validator of a configuration's "validate" value; nothing for an unknown name.
std::optional<Validator> validatorNamed(std::string_view name);
// The names validatorNamed accepts, for error messages.
const char* validatorNames();

bool validate(Validator validator, std::string_view text);

// ISO 13616: country letters, two check digits, up to 30 letters or digits; mod 97 == 1.
bool isValidIban(std::string_view text);
// The Luhn check of payment cards, on 12 to 19 digits.
bool passesLuhn(std::string_view text);
// Day, month and year as numbers (d.m.y, d/m/y, m/d/y, y-m-d) or with a German or English
// month name; the date must exist (29 February only in leap years).
bool isValidDate(std::string_view text);
bool isValidEmail(std::string_view text);
// German tax identification number: 11 digits, ISO 7064 MOD 11,10 check digit, in the
// first ten digits one digit twice or three times and no other repeated.
bool isValidTaxId(std::string_view text);
// German pension insurance number: area (2 digits), birth date (6), initial letter, serial
// (2), check digit over the weights 2 1 2 5 7 1 2 1 2 1 2 1.
bool isValidPensionNumber(std::string_view text);
// SWIFT code: bank (4 letters), country (2 letters), location (2), optional branch (3).
bool isValidBic(std::string_view text);
// 7 to 15 digits, as an international or a national number.
bool isValidPhone(std::string_view text);

}  // namespace qent::dataextract
