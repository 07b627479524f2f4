// AddressGrammar.h - the line grammar of recipient and sender blocks in German and English
// business letters (Germany, Austria, Switzerland, the United Kingdom, the United States).
//
// Everything here works on lines of text, trimmed and with runs of white space collapsed;
// where the lines came from (a text file, a layout) is the caller's business. Nothing
// throws on odd input: text that does not fit the grammar is simply not an address.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qent::dataextract {

// The fields of one address block; a field the block does not have is empty.
struct AddressFields {
  std::vector<std::u16string> lines;  // the block's lines as read
  std::u16string name;                // the person, without salutation or attention mark
  std::u16string company;
  std::u16string street;              // or the post-office box word ("Postfach", "PO Box")
  std::u16string houseNumber;         // or the box number
  std::u16string postalCode;
  std::u16string town;
  std::u16string country;             // the country line as written
  // Contact data, found in letterhead and footer blocks only.
  std::u16string phone;
  std::u16string email;
  std::u16string web;
  std::size_t nameLines = 0;          // lines before the street line
};

// A recipient block: name or company lines, a street line with a house number (or a
// post-office box), a postal-code-and-town line, an optional country line; 2 to 7 lines.
std::optional<AddressFields> parseRecipientBlock(const std::vector<std::u16string>& lines);

// The one-line return address above the window ("Firma · Straße 1 · 12345 Ort"), parts
// separated by "·", "|", "•", " - " or ",". It needs a name or company part.
std::optional<AddressFields> parseSenderLine(std::u16string_view line);

// A letterhead or footer block: a postal address followed by at least one contact line
// (phone, e-mail, web) and possibly registration and bank lines.
std::optional<AddressFields> parseSenderBlock(const std::vector<std::u16string>& lines);

// A sender given as text: one line is a return address, more lines a letterhead block.
std::optional<AddressFields> parseSender(const std::vector<std::u16string>& lines);

// The non-empty lines of a text, trimmed and with white space collapsed.
std::vector<std::u16string> addressLines(std::u16string_view text);

// True when the line holds contact, registration or bank data rather than an address.
bool isContactLine(std::u16string_view line);

}  // namespace qent::dataextract
