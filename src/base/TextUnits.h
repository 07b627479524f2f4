// TextUnits.h - what counts as one character and one word when error rates are reported to
// people: Unicode normalisation, user-perceived characters (grapheme clusters) and white
// space. The library's own rates count UTF-16 code units; these units are for the figures
// that OCR-evaluation users compare across tools.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qent::base {

enum class Normalization { None, Nfc, Nfkc };

// "none", "nfc", "nfkc" (ASCII case ignored); any other name is a QentException 20020 that
// lists the accepted names.
Normalization normalizationFromName(std::u16string_view name);
std::string_view normalizationName(Normalization normalization);

// Whether this build can normalise and find grapheme clusters. Without it, asking for
// either fails with a QentException 20020 that says the build lacks it; counting code points
// without normalisation always works.
bool hasUnicodeSegmentation();

// The code points of text after normalisation.
std::u32string normalizedCodePoints(std::u16string_view text, Normalization normalization);

// The start offsets of the grapheme clusters of text (extended clusters, as a reader
// perceives characters: "e" with a combining accent is one), followed by text.size().
std::vector<std::size_t> graphemeBoundaries(std::u32string_view text);

// Unicode white space (the White_Space property), which separates words.
bool isWhiteSpace(char32_t c);

}  // namespace qent::base
