// BestOfMerge.h - several recognitions of one document merged into one layout that holds the
// words enough of them agree on, each read as most of them read it.
//
// Page i of the result merges page i of every input. Each input page is scaled onto the
// common page size (options.pageWidth x options.pageHeight, when equalizeLayouts), its words
// are clustered with those of the other inputs (WordClusters.h), a cluster with words from
// at least requiredVotes() inputs becomes a word whose text is voted (TextVote.h), whose
// rectangle is the median of its members' edges and whose confidence is the share of
// agreeing inputs times their mean confidence; the words are then set into lines
// (LineBuilder.h) inside one content area per page. The inputs are only read.
#pragma once

#include "bestof/BestOfOptions.h"
#include "bestof/ReferenceImage.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>

namespace qent::text::layout {
class Layout;
}

namespace qent::bestof {

// How many inputs must agree on a word: threshold x inputs rounded down, at least 1 and at
// most all of them. With the default 0.7, two of three.
std::size_t requiredVotes(float threshold, std::size_t inputs);

// The size of the largest page (width x height) of all inputs, the first one on a tie;
// nothing when no page has a size.
std::optional<ImageSize> largestPage(std::span<const text::layout::Layout* const> inputs);

// Throws std::runtime_error naming the problem when there is no input or a trace file cannot
// be written. An empty traceDirectory writes no trace.
std::unique_ptr<text::layout::Layout> mergeLayouts(
    std::span<const text::layout::Layout* const> inputs, const BestOfOptions& options,
    const std::filesystem::path& traceDirectory);

}  // namespace qent::bestof
