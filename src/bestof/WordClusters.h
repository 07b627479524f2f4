// WordClusters.h - groups the words of several recognitions of one page that stand for the
// same word on paper.
//
// A raster of cellsX x cellsY cells lies over the page; each word occupies the cells of its
// rectangle shrunk around its centre (so the words beside it, above and below it do not
// touch it). Two words of different inputs are candidates when they share a cell and the
// intersection over union of their full rectangles is at least minOverlap. Candidates are
// then joined best overlap first, as long as a cluster holds at most one word of each input:
// a word split in two by one engine joins with its larger half, and the other half stays
// alone. Only words that share raster rows are ever compared (a sweep from top to bottom),
// so the cost is O(W log W + W k) for W words and k words per row of text. A page whose words
// pile up so that k exceeds a thousand is refused with std::runtime_error instead.
#pragma once

#include "bestof/Candidate.h"

#include <cstdint>
#include <span>
#include <vector>

namespace qent::bestof {

struct RasterGeometry {
  double pageWidth = 1;
  double pageHeight = 1;
  std::int32_t cellsX = 1;
  std::int32_t cellsY = 1;
  double wordWidthFactor = 0.9;
  double wordHeightFactor = 0.7;
};

// Each cluster lists indexes into `words`, in ascending order; every word is in exactly one
// cluster (possibly alone). Clusters are ordered by their first word.
std::vector<std::vector<std::uint32_t>> clusterWords(std::span<const Candidate> words,
                                                     const RasterGeometry& raster,
                                                     double minOverlap);

}  // namespace qent::bestof
