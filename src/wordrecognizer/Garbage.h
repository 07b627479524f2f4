// Garbage.h - tokens that no language writes: the rules that tell OCR debris from words.
//
// A token is garbage when one rule fires: longer than 40 characters; too few letters and
// digits for its length; four identical non-digit characters in a row; letters only with
// almost no vowels or almost no consonants; two different punctuation characters inside;
// lower case at both ends with an upper-case letter inside (not after a ".").
#pragma once

#include <string_view>

namespace qent::text::wordrecognizer {

bool isGarbage(std::u16string_view token);

}  // namespace qent::text::wordrecognizer
