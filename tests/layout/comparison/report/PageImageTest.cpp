// PageImageTest.cpp - page images as the report embeds them.
#include "layout/comparison/report/PageImage.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace {

using namespace qent::text::layout::comparison::report;

TEST(PageImageTest, EncodesBase64AsTheStandardDoes) {
  // The test vectors of RFC 4648, section 10: every length of the last group.
  const std::pair<std::string_view, std::string_view> vectors[] = {{"", ""},
                                                                   {"f", "Zg=="},
                                                                   {"fo", "Zm8="},
                                                                   {"foo", "Zm9v"},
                                                                   {"foob", "Zm9vYg=="},
                                                                   {"fooba", "Zm9vYmE="},
                                                                   {"foobar", "Zm9vYmFy"}};
  for (const auto& [bytes, encoded] : vectors) EXPECT_EQ(base64(bytes), encoded) << bytes;
  // The high digits, from bytes above 0x7f.
  EXPECT_EQ(base64(std::string_view("\xff\xfe\x00", 3)), "//4A");
}

TEST(PageImageTest, EmbedsOnlyImagesABrowserShows) {
  const qent::test::TempDir dir;
  const std::string png("\x89PNG\r\n\x1a\n\0\0", 10);
  EXPECT_EQ(imageDataUri(dir.write("page.png", png)), "data:image/png;base64,iVBORw0KGgoAAA==");
  EXPECT_EQ(imageDataUri(dir.write("page.jpg", "\xff\xd8\xff\xe0")),
            "data:image/jpeg;base64,/9j/4A==");
  // Told by content, not by name; a TIFF or a text is left out, as is a missing file.
  EXPECT_EQ(imageDataUri(dir.write("page.tif", "II*\0")), "");
  EXPECT_EQ(imageDataUri(dir.write("notes.png", "not an image")), "");
  EXPECT_EQ(imageDataUri(dir / "missing.png"), "");
}

}  // namespace
