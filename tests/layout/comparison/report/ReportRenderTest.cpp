// ReportRenderTest.cpp - a report of a real Tesseract page as headless Chromium shows it:
// the page image loads, the line boxes lie on it, the tables sort, and a screenshot is taken.
#include "support/Golden.h"
#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

namespace {

#if !defined(_WIN32)
// Reports what the browser made of the report into #probe: the loaded image's width, how
// many boxes there are and how many lie inside the page, and whether the confusion counts
// are in order after one click (ascending) and after a second (descending) on their head.
constexpr const char* kProbe = R"(<script>
const page = document.querySelector('.page').getBoundingClientRect();
const boxes = Array.from(document.querySelectorAll('.box'), b => b.getBoundingClientRect());
const inside = boxes.filter(r => r.width > 0 && r.left >= page.left && r.right <= page.right &&
                                 r.top >= page.top && r.bottom <= page.bottom).length;
const counts = () => Array.from(document.querySelectorAll('#confusions tbody tr'),
                                r => Number(r.cells[2].textContent));
const ordered = (list, sign) =>
    list.length > 0 && list.every((v, i) => i === 0 || sign * (v - list[i - 1]) >= 0);
const head = document.querySelectorAll('#confusions th')[2];
head.click();
const ascending = ordered(counts(), 1);
head.click();
const pre = document.createElement('pre');
pre.id = 'probe';
pre.textContent = [document.querySelector('.page img').naturalWidth, boxes.length, inside,
                   ascending, ordered(counts(), -1)].join(' ');
document.body.appendChild(pre);
</script>)";

std::string run(const std::string& command) {
  std::string out;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return out;
  char buffer[4096];
  for (std::size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, n);
  pclose(pipe);
  return out;
}

#endif

TEST(ReportRenderTest, ChromiumShowsTheImageBoxesAndSortsTheConfusions) {
#if defined(_WIN32)
  GTEST_SKIP() << "Chromium is checked on Linux only";
#else
  if (std::system("command -v chromium >/dev/null 2>&1") != 0) {
    GTEST_SKIP() << "Chromium is not installed (Debian package chromium, which "
                    "tools/install-deps installs): the report was not rendered";
  }
  const std::filesystem::path samples =
      std::filesystem::path(ORMIDA_SOURCE_DIR) / "data" / "samples";
  const qent::test::TempDir dir;
  qent::test::Job job;
  job.set("TolerantHocr", "true");
  job.set("InputFilename", (samples / "hocr-letter-eng-tesseract.hocr").string());
  job.set("Compare", "true");
  job.set("Compare.With", (samples / "hocr-letter-eng-truth.hocr").string());
  job.set("ComparisonReportFilename", (dir / "report.html").string());
  ASSERT_EQ(job.execute(), 0u) << job.errorText();
  std::string html = qent::test::readAll(dir / "report.html");
  html.insert(html.rfind("</body>"), kProbe);
  const auto probed = dir.write("probed.html", html);
  // A profile of its own, so that a browser already running is not asked to do it; the
  // time limit keeps a stuck browser from stopping the suite.
  std::string chromium =
      "timeout 60 chromium --headless --no-sandbox --disable-gpu "
      "--hide-scrollbars --window-size=1200,1400 --user-data-dir='";
  chromium += (dir / "profile").string();
  chromium += "' ";
  const std::string dom = run(chromium + "--dump-dom 'file://" + probed.string() + "' 2>/dev/null");
  const std::size_t start = dom.find("<pre id=\"probe\">");
  ASSERT_NE(start, std::string::npos) << "no probe in Chromium's DOM:\n" << dom.substr(0, 2000);
  std::istringstream probe(dom.substr(start + 16, dom.find("</pre>", start) - start - 16));
  long imageWidth = 0, boxes = 0, inside = 0;
  std::string ascending, descending;
  probe >> imageWidth >> boxes >> inside >> ascending >> descending;
  EXPECT_EQ(imageWidth, 1700) << "the embedded page image loads";
  EXPECT_GT(boxes, 5);
  EXPECT_EQ(inside, boxes) << "every line box lies on the page";
  EXPECT_EQ(ascending + " " + descending, "true true") << "the confusions sort both ways";

  const auto screenshot = dir / "report.png";
  run(chromium + "--screenshot='" + screenshot.string() + "' 'file://" +
      (dir / "report.html").string() + "' >/dev/null 2>&1");
  ASSERT_TRUE(std::filesystem::exists(screenshot)) << "Chromium took no screenshot";
  EXPECT_GT(std::filesystem::file_size(screenshot), 20000u) << "the screenshot looks empty";
#endif
}

}  // namespace
