// HtmlRenderTest.cpp - the bundled two-column sample as a browser lays it out: headless
// Chromium renders it and reports where each column's first word stands.
#include "layout/format/html/HtmlWriter.h"

#include "io/DocumentReader.h"
#include "layout/Layout.h"
#include "support/Golden.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace {

// Writes "<first word> <left> <top> <right> <bottom>" of every column into #geometry.
constexpr const char* kProbe = R"(<script>
const lines = [];
for (const col of document.querySelectorAll('.col')) {
  const walker = document.createTreeWalker(col, NodeFilter.SHOW_TEXT);
  let n = walker.nextNode();
  while (n && !/\S/.test(n.data)) n = walker.nextNode();
  const start = n.data.search(/\S/), word = n.data.slice(start).split(/\s/)[0];
  const range = document.createRange();
  range.setStart(n, start);
  range.setEnd(n, start + word.length);
  const r = range.getBoundingClientRect();
  lines.push([word, r.left, r.top, r.right, r.bottom].join(' '));
}
const pre = document.createElement('pre');
pre.id = 'geometry';
pre.textContent = lines.join('\n');
document.body.appendChild(pre);
</script>)";

struct Word { std::string text; double left = 0, top = 0, right = 0, bottom = 0; };

TEST(HtmlRenderTest, ChromiumShowsTheColumnsSideBySideInReadingOrder) {
#if defined(_WIN32)
  GTEST_SKIP() << "Chromium is checked on Linux only";
#else
  if (std::system("command -v chromium >/dev/null 2>&1") != 0) {
    GTEST_SKIP() << "Chromium is not installed (Debian package chromium, which "
                    "tools/install-deps installs): the HTML was not rendered";
  }
  const std::string input =
      qent::test::readAll(ORMIDA_SOURCE_DIR "/data/samples/two-columns.hocr");
  std::string html = qent::text::layout::format::html::HtmlWriter().write(
      *qent::io::readDocument(input, "two-columns.hocr", {})->takeLayout());
  html.insert(html.rfind("</body>"), kProbe);
  const qent::test::TempDir dir;
  const auto page = dir.write("page.html", html);
  // A profile of its own, so that a browser already running is not asked to do it; the
  // time limit keeps a stuck browser from stopping the suite.
  const std::string command =
      "timeout 60 chromium --headless --no-sandbox --disable-gpu --user-data-dir='" +
      (dir / "profile").string() + "' --window-size=1200,900 --dump-dom 'file://" +
      page.string() + "' 2>/dev/null";
  FILE* pipe = popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::string dom;
  char buffer[4096];
  for (std::size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;) dom.append(buffer, n);
  pclose(pipe);
  const std::size_t start = dom.find("<pre id=\"geometry\">");
  ASSERT_NE(start, std::string::npos) << "no geometry in Chromium's DOM:\n" << dom.substr(0, 2000);
  std::istringstream lines(dom.substr(start + 19, dom.find("</pre>", start) - start - 19));
  std::vector<Word> columns;
  for (Word w; lines >> w.text >> w.left >> w.top >> w.right >> w.bottom;) columns.push_back(w);
  ASSERT_EQ(columns.size(), 3u) << dom.substr(start, 400);
  const Word &heading = columns[0], &left = columns[1], &right = columns[2];
  EXPECT_EQ(heading.text + " " + left.text + " " + right.text, "Harbour The The");
  EXPECT_LE(heading.bottom, left.top) << "the heading stands above the columns";
  EXPECT_GT(right.left, left.right) << "the second column stands right of the first";
  EXPECT_NEAR(right.top, left.top, 2.0) << "both columns start on one level";
#endif
}

}  // namespace
