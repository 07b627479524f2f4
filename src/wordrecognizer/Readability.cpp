// Readability.cpp - the readability formulas, their clamping and their classes.
#include "wordrecognizer/Readability.h"

namespace qent::text::wordrecognizer {

namespace {

double ratio(double numerator, std::uint64_t divisor) {
  return divisor == 0 ? 0.0 : numerator / static_cast<double>(divisor);
}

// A school grade from 4 to 15 onto 0..100.
int mapGrade(double grade) {
  if (grade > 15) grade = 15;
  if (grade < 4) grade = 4;
  return static_cast<int>((grade - 4) / 11 * 100);
}

}  // namespace

Readability computeReadability(const ReadabilityCounts& counts) {
  const auto words = static_cast<double>(counts.totalWords);
  const double asl = ratio(words, counts.totalSentences);
  const double asw = ratio(static_cast<double>(counts.totalSyllables), counts.totalWords);
  const double ms = ratio(100.0 * static_cast<double>(counts.polysyllableWords), counts.totalWords);
  const double es = ratio(100.0 * static_cast<double>(counts.oneSyllableWords), counts.totalWords);
  const double iw = ratio(100.0 * static_cast<double>(counts.longWords), counts.totalWords);

  Readability result;
  const double fre = 180 - asl - 58.5 * asw;
  result.fre = fre > 100 ? 100 : fre < 0 ? 0 : static_cast<int>(fre);
  result.wstf = {
      mapGrade(0.1935 * ms + 0.1672 * asl + 0.1297 * iw - 0.0327 * es - 0.875),
      mapGrade(0.2007 * ms + 0.1682 * asl + 0.1373 * iw - 2.779),
      mapGrade(0.2963 * ms + 0.1905 * asl - 1.1144),
      mapGrade(0.2744 * ms + 0.2656 * asl - 1.693),
  };
  return result;
}

std::string_view freClass(int fre) {
  if (fre >= 90) return "Very easy";
  if (fre >= 80) return "Light";
  if (fre >= 70) return "Medium easy";
  if (fre >= 60) return "Medium";
  if (fre >= 50) return "Moderate";
  if (fre >= 30) return "Heavy";
  return "Very difficult";
}

std::string_view wstfClass(int mappedWstf) {
  if (mappedWstf < 14) return "Very easy";
  if (mappedWstf < 28) return "Light";
  if (mappedWstf < 42) return "Medium easy";
  if (mappedWstf < 56) return "Medium";
  if (mappedWstf < 70) return "Moderate";
  if (mappedWstf < 84) return "Heavy";
  return "Very difficult";
}

}  // namespace qent::text::wordrecognizer
