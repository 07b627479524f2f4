// MeanOf.h - a mean of confidences that cannot overflow.
//
// Confidences are stored as the OCR delivered them, and readers only check that they are
// finite: two values near the top of the double range would sum to infinity, and a mean of
// infinity is a number no output format can hold. The plain sum is kept because it gives the
// bits every ordinary document has always had; a second sum, scaled down by 2^64, stands in
// only when the plain one overflowed.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace qent::base {

class MeanOf {
 public:
  void add(double value) {
    sum_ += value;
    scaledSum_ += value * kScale;
    largest_ = std::max(largest_, value);
    ++count_;
  }

  std::size_t count() const { return count_; }
  // The mean of the values added; call only after adding one.
  double mean() const { return over(static_cast<double>(count_)); }
  // The mean over `divisor` values; callers may count values they did not add (as zero).
  double over(double divisor) const {
    if (std::isfinite(sum_)) return sum_ / divisor;
    // A mean is never above its largest value; the bound catches rounding at the very top.
    return std::min(scaledSum_ / divisor / kScale, largest_);
  }

 private:
  static constexpr double kScale = 0x1p-64;
  double sum_ = 0;
  double scaledSum_ = 0;
  double largest_ = 0;
  std::size_t count_ = 0;
};

}  // namespace qent::base
