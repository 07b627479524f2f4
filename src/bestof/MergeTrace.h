// MergeTrace.h - the diagnostic file of one merged page: every cluster, its members and the
// outcome of its vote, for finding out why a word was dropped or read as it was.
#pragma once

#include "bestof/MergedWord.h"

#include <cstddef>
#include <filesystem>
#include <span>

namespace qent::bestof {

// Writes <directory>/bestof-page-NNNN.json (NNNN the page's position from 1), creating the
// directory when needed. A JSON object with "page", "required" (inputs that must agree) and
// "clusters": per cluster "text", "confidence", "kept", "rect" [left, top, width, height]
// and "members" (each "input", "text", "rect"). Throws std::runtime_error naming the file
// when it cannot be written.
void writeMergeTrace(const std::filesystem::path& directory, std::size_t pageIndex,
                     std::size_t required, std::span<const Candidate> candidates,
                     std::span<const MergedWord> words);

}  // namespace qent::bestof
