// XmlText.h - text that every XML format can carry.
#pragma once

#include <string>
#include <string_view>

namespace qent::base::xml {

// Text for XML: drops the characters XML 1.0 forbids (C0 controls other than tab, line feed
// and carriage return; U+FFFE, U+FFFF) and turns unpaired surrogates into U+FFFD.
std::string xmlText(std::u16string_view text);
std::string xmlText(std::string_view utf8);
// The same, into `out` (replacing its content, keeping its memory); true when characters
// had to be dropped or replaced.
bool assignXmlText(std::string& out, std::u16string_view text);

}  // namespace qent::base::xml
