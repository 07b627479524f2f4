// NaiveComparison.h - the obvious quadratic forms of the comparison's two algorithms, for
// benchmarks that show what the engine's own algorithms save.
#pragma once

#include "layout/comparison/Comparator.h"

namespace ormida::bench {

// Every left rectangle tested against every right one, and the full single-row dynamic
// programme for the edit distance; results identical to the engine's.
qent::text::layout::comparison::ComparisonKernels naiveKernels();

}  // namespace ormida::bench
