// ReferenceImageTest.cpp - page sizes from PNG and JPEG headers, and nothing from anything else.
#include "bestof/ReferenceImage.h"

#include "base/FileIo.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

using qent::bestof::imageSize;
using qent::bestof::readImageSize;

const std::filesystem::path kImages = std::filesystem::path(ORMIDA_TEST_DATA_DIR) / "bestof" / "images";

TEST(ReferenceImageTest, ReadsPngAndJpegSizesAndRefusesTheRest) {
  const auto png = readImageSize(kImages / "page.png");
  ASSERT_TRUE(png);
  EXPECT_EQ(png->width, 4);
  EXPECT_EQ(png->height, 3);
  const auto jpeg = readImageSize(kImages / "page.jpg");
  ASSERT_TRUE(jpeg);
  EXPECT_EQ(jpeg->width, 5);
  EXPECT_EQ(jpeg->height, 7);
  const std::string bytes = qent::base::readFile(kImages / "page.png");
  for (const std::string& bad : {bytes.substr(0, 20), std::string("GIF89a\x04\0\x03\0", 10), std::string()}) {
    EXPECT_FALSE(imageSize(bad)) << bad.size();
  }
  EXPECT_FALSE(readImageSize(kImages / "missing.png"));
}

}  // namespace
