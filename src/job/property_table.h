// property_table.h - property names and their fixed numbers.
#pragma once

#include <cstdint>
#include <string_view>

namespace qent::job {

inline constexpr std::uint32_t kPropertyCount = 806;
inline constexpr std::uint32_t kUnknownProperty = 0;

// The numbers of the properties this library reads or writes.
enum PropertyNumber : std::uint32_t {
  kAddressRecognition = 3,
  kBestOfLayout = 36,
  kCheckMask = 71,
  kClusterAreaTolerance = 76,
  kCompare = 86,
  kCompareErrorRate = 87,
  kConfiguration = 94,
  kDictionaryWorkSpace = 129,
  kEditDistance = 165,
  kEntityExtraction = 189,
  kEqualizeLayouts = 190,
  kExtractFromLayout = 203,
  kFormat = 280,
  kGarbageThreshold = 282,
  kInputFilename = 344,
  kInputFilenamePattern = 345,
  kInputFormat = 346,
  kInputMemoryAddress = 353,
  kLargeWordLimit = 376,
  kLevel = 380,
  kMaxLineHeightDeviation = 416,
  kMaxWordDistance = 422,
  kMemoryOutputCallback = 425,
  kMemoryOutputUserdata = 426,
  kMode = 432,
  kOptions = 463,
  kOutput = 469,
  kOutputFilename = 471,
  kOverlapThreshold = 486,
  kPageHeight = 492,
  kPageOffset = 499,
  kPageWidth = 502,
  kPartialSegmentationErrors = 513,
  kRasterFactorX = 564,
  kRasterFactorY = 565,
  kRecognizedWordsFilename = 575,
  kRejectedWordsFilename = 577,
  kReferenceImageFilename = 581,
  kRemoveMatchingBoxes = 598,
  kRegions = 608,
  kResult = 635,
  kSmallWordLimit = 676,
  kStatisticsFilename = 686,
  kStatisticsOutputFormat = 687,
  kStatisticsPerPage = 688,
  kTestRecipient = 705,
  kTestRecipientSender = 706,
  kTestSender = 707,
  kTextAcceptThreshold = 709,
  kTolerantHocr = 737,
  kTraceDirectory = 739,
  kTraceFilename = 740,
  kTransformLayout = 744,
  kTransformStrategy = 745,
  kVerticalConfidenceMin = 775,
  kWebAnnoOffsets = 780,
  kWith = 782,
  kWordHeightFactor = 784,
  kWordRecognizer = 785,
  kWordWidthFactor = 787,
  kWorkSpace = 788,
  kXmlLayoutFormats = 790,
  // Character and word error counts of the comparison: the Unicode normalisation, and
  // counting grapheme clusters instead of code points.
  kNormalization = 791,
  kGraphemes = 792,
  kComparisonReportFilename = 793,
};

// The name at a number ("__Unknown" for 0 and for numbers outside the table).
std::string_view propertyName(std::uint32_t number);
// The number of a name, compared byte for byte (case-sensitive); 0 when not in the table.
std::uint32_t propertyNumber(std::string_view name);

// Key of a result sub-property: sub number * 1024 + main number.
constexpr std::uint32_t subPropertyKey(std::uint32_t mainNumber, std::uint32_t subNumber) {
  return subNumber * 1024 + mainNumber;
}

}  // namespace qent::job
