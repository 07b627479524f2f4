// Unicode.h - the one place where text changes between UTF-8 and UTF-16.
//
// Invalid input (broken UTF-8 sequences, lone surrogates) is an error with a clear message,
// never undefined behaviour: a std::invalid_argument naming what was wrong and where.
#pragma once

#include <string>
#include <string_view>

namespace qent::base {

std::u16string utf8ToUtf16(std::string_view text);
// The offset of the first byte that is not part of valid UTF-8, or npos when all is valid.
// Fast on ASCII, for checking whole documents before parsing them.
std::size_t findInvalidUtf8(std::string_view text);
std::string utf16ToUtf8(std::u16string_view text);

// Lenient variants for diagnostics only (trace lines, error texts): invalid sequences
// become U+FFFD instead of failing, so that reporting an error cannot itself fail.
std::u16string utf8ToUtf16Lenient(std::string_view text);
std::string utf16ToUtf8Lenient(std::u16string_view text);

// Code points of UTF-16 text, and of UTF-8 text, for counting and normalising characters.
// Lenient: a lone surrogate stands as its own code point, invalid UTF-8 as U+FFFD, since a
// count must not fail on text that a reader already accepted.
std::u32string utf16ToCodePoints(std::u16string_view text);
std::u32string utf8ToCodePoints(std::string_view text);

// ASCII-only case folding, for the format and level names that are compared without case.
bool equalsIgnoreAsciiCase(std::string_view a, std::string_view b);
std::string toLowerAscii(std::string_view text);

}  // namespace qent::base
