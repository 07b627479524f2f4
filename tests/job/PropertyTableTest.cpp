// PropertyTableTest.cpp - the property numbers results are keyed by.
#include "job/property_table.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using namespace qent::job;

TEST(PropertyTableTest, NamedPropertiesHaveTheirNumbers) {
  const std::pair<const char*, std::uint32_t> named[] = {
      {"AddressRecognition", 3}, {"BestOfLayout", 36}, {"CheckMask", 71},
      {"ClusterAreaTolerance", 76}, {"Compare", 86}, {"CompareErrorRate", 87},
      {"Configuration", 94}, {"DictionaryWorkSpace", 129}, {"EditDistance", 165},
      {"EntityExtraction", 189}, {"EqualizeLayouts", 190}, {"ExtractFromLayout", 203},
      {"Format", 280}, {"GarbageThreshold", 282}, {"InputFilename", 344},
      {"InputFilenamePattern", 345}, {"InputFormat", 346}, {"InputMemoryAddress", 353},
      {"LargeWordLimit", 376}, {"Level", 380}, {"MaxLineHeightDeviation", 416},
      {"MaxWordDistance", 422}, {"MemoryOutputCallback", 425}, {"MemoryOutputUserdata", 426},
      {"Mode", 432}, {"Options", 463}, {"Output", 469}, {"OutputFilename", 471},
      {"OverlapThreshold", 486}, {"PageHeight", 492}, {"PageOffset", 499}, {"PageWidth", 502},
      {"PartialSegmentationErrors", 513}, {"RasterFactorX", 564}, {"RasterFactorY", 565},
      {"RecognizedWordsFilename", 575}, {"RejectedWordsFilename", 577},
      {"ReferenceImageFilename", 581}, {"RemoveMatchingBoxes", 598}, {"Regions", 608},
      {"Result", 635}, {"SmallWordLimit", 676}, {"StatisticsFilename", 686},
      {"StatisticsOutputFormat", 687}, {"StatisticsPerPage", 688}, {"TestRecipient", 705},
      {"TestRecipientSender", 706}, {"TestSender", 707}, {"TextAcceptThreshold", 709},
      {"TraceDirectory", 739}, {"TraceFilename", 740}, {"TransformLayout", 744},
      {"TransformStrategy", 745}, {"VerticalConfidenceMin", 775}, {"With", 782},
      {"WordHeightFactor", 784}, {"WordRecognizer", 785}, {"WordWidthFactor", 787},
      {"WorkSpace", 788}};
  for (const auto& [name, number] : named) {
    EXPECT_EQ(propertyNumber(name), number) << name;
    EXPECT_EQ(propertyName(number), name);
  }
}

TEST(PropertyTableTest, HasEightHundredSixUniqueEntries) {
  std::set<std::string> names;
  for (std::uint32_t i = 0; i < kPropertyCount; ++i) names.emplace(propertyName(i));
  EXPECT_EQ(names.size(), 806u);
  EXPECT_EQ(propertyName(0), "__Unknown");
  EXPECT_EQ(propertyName(806), "__Unknown");
}

TEST(PropertyTableTest, LookupIsExactAndCaseSensitive) {
  EXPECT_EQ(propertyNumber("compare"), 0u);
  EXPECT_EQ(propertyNumber("Compare "), 0u);
  EXPECT_EQ(propertyNumber("Compar"), 0u);
  EXPECT_EQ(propertyNumber(""), 0u);
  EXPECT_EQ(propertyNumber("__Unknown"), 0u) << "entry 0 means no property";
  EXPECT_EQ(propertyNumber(std::string_view("Compare\0x", 9)), 0u);
}

TEST(PropertyTableTest, SubPropertyKey) {
  EXPECT_EQ(subPropertyKey(86, 635), 635u * 1024 + 86);
}

}  // namespace
