// AddressRecognizer.h - the recipient and sender blocks of business letters.
//
// The grammar (AddressGrammar.h) decides whether lines form an address; on layouts the
// candidate blocks come from the lines of each page and are scored by the grammar and by
// their position on the page. Bad input is never an error here: a document without an
// address yields null for it.
#pragma once

#include <string>
#include <string_view>

namespace qent::text::layout {
class Node;
}

namespace qent::dataextract {

// The decisions on a text given as a whole block.
bool isRecipientText(std::u16string_view text);
bool isSenderText(std::u16string_view text);

// The result of one document as JSON, members in ascending key order:
//   {"recipient":{...,"confidence":0.93,...},"sender":{...}}
// with null for a block that is not found. Recipient and sender never share a line.
std::string recognizeAddresses(text::layout::Node& root);
// The same for a plain text, whose blocks are separated by blank lines; rect and page
// are null there.
std::string recognizeAddressesInText(std::u16string_view text);

}  // namespace qent::dataextract
