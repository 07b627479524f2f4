// EditDistance.h - exact Levenshtein distance over UTF-16 code units, bit-parallel.
//
// Unit costs for insertion, deletion and substitution; two code units are equal only when
// their values are equal (no case folding, no normalisation, a surrogate pair is two units).
// The result is exactly that of the classic single-row dynamic programme; the computation
// strips the common prefix and suffix and then runs Myers' bit-vector algorithm in Hyyrö's
// formulation, in blocks of 64 units when the shorter text is longer than that, so a
// comparison costs O(ceil(m / 64) * n) word operations instead of O(m * n) cells.
#pragma once

#include <cstddef>
#include <string_view>

namespace qent::text::layout::comparison {

std::size_t editDistance(std::u16string_view a, std::u16string_view b);

}  // namespace qent::text::layout::comparison

namespace qent::text::layout::comparison {

// The same distance over sequences of arbitrary symbols (code points, ids of grapheme
// clusters or words): the symbols are renumbered densely and handed to the fast kernel;
// only a pair with more than 65,535 distinct symbols falls back to the single-row programme.
std::size_t symbolEditDistance(std::u32string_view a, std::u32string_view b);

}  // namespace qent::text::layout::comparison
