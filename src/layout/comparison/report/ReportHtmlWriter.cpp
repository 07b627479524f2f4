// ReportHtmlWriter.cpp - the report's markup, style and sorting script.
#include "layout/comparison/report/ReportHtmlWriter.h"

#include "base/Sink.h"
#include "base/xml/XmlText.h"
#include "base/xml/XmlWriter.h"
#include "layout/comparison/report/PageImage.h"
#include "layout/comparison/report/ReportData.h"

#include <charconv>
#include <initializer_list>
#include <string>

namespace qent::text::layout::comparison::report {

namespace {

using base::xml::xmlText;
using base::xml::XmlWriter;

// The white space the writer puts between the spans of a row takes no room in a row's
// zero-size font, while the spans keep their own blanks (pre-wrap) and wrap like text.
constexpr std::string_view kStyle = R"(body{font-family:sans-serif;margin:1.5em;color:#222}
table{border-collapse:collapse;margin:0.5em 0 1.5em}
th,td{border:1px solid #ccc;padding:0.2em 0.5em;vertical-align:top;text-align:left}
table.sortable th{cursor:pointer;background:#eee}
th[aria-sort=ascending]::after{content:" \25B2"}
th[aria-sort=descending]::after{content:" \25BC"}
td.n{text-align:right}
.d{font-size:0;font-family:monospace}
.d span{font-size:13px;white-space:pre-wrap}
.p{font-family:monospace;white-space:pre}
.sub{background:#ffd27f}
.del{background:#ff9f9f;text-decoration:line-through}
.ins{background:#9fd8ff}
.none{color:#888}
tr.bad td.e{color:#c00;font-weight:bold}
.page{position:relative;width:100%;max-width:900px;border:1px solid #999;background:#fff}
.page img{position:absolute;left:0;top:0;width:100%;height:100%}
.box{position:absolute;display:block;border:1px solid rgba(0,150,0,0.7);box-sizing:border-box}
.box.bad{border-color:rgba(220,0,0,0.9);background:rgba(255,0,0,0.12)}
.legend span{padding:0 0.4em;margin-right:0.5em})";

// Sorts a table by the clicked column: by the cells' data-sort numbers when they have them,
// else by their text; a second click reverses the order.
constexpr std::string_view kScript =
    R"(for (const table of document.querySelectorAll('table.sortable')) {
  const heads = table.tHead.rows[0].cells;
  for (let c = 0; c !== heads.length; ++c) {
    heads[c].addEventListener('click', function () {
      const ascending = heads[c].getAttribute('aria-sort') !== 'ascending';
      for (const head of heads) head.removeAttribute('aria-sort');
      heads[c].setAttribute('aria-sort', ascending ? 'ascending' : 'descending');
      const key = function (row) {
        const cell = row.cells[c];
        return cell.dataset.sort !== undefined ? Number(cell.dataset.sort) : cell.textContent;
      };
      const body = table.tBodies[0];
      const rows = Array.from(body.rows);
      rows.sort(function (a, b) {
        const x = key(a), y = key(b);
        const order = typeof x === 'number' ? x - y : x.localeCompare(y);
        return ascending ? order : -order;
      });
      for (const row of rows) body.appendChild(row);
    });
  }
})";

// Joins pieces by appending: GCC 12 at -O3 warns falsely (-Wrestrict) on "literal" + a
// temporary string.
std::string concat(std::initializer_list<std::string_view> pieces) {
  std::string out;
  for (std::string_view piece : pieces) out += piece;
  return out;
}

std::string fixed(double value, int decimals) {
  char buffer[64];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  return std::string(buffer, result.ptr);
}

std::string percent(std::size_t part, std::size_t whole) {
  return whole == 0 ? "0.00"
                    : fixed(100.0 * static_cast<double>(part) / static_cast<double>(whole), 2);
}

void element(XmlWriter& out, std::string_view name, std::string_view text) {
  out.startElement(name);
  out.text(text);
  out.endElement();
}

// A table cell; numeric cells carry their value for sorting.
void cell(XmlWriter& out, std::string_view text, std::string_view sortValue = {}) {
  out.startElement("td");
  if (!sortValue.empty()) {
    out.attribute("class", "n");
    out.attribute("data-sort", sortValue);
  }
  out.text(text);
  out.endElement();
}

void countCell(XmlWriter& out, std::size_t value) {
  const std::string text = std::to_string(value);
  cell(out, text, text);
}

void head(XmlWriter& out, std::initializer_list<std::string_view> names) {
  out.startElement("thead");
  out.startElement("tr");
  for (std::string_view name : names) element(out, "th", name);
  out.endElement();
  out.endElement();
}

// One side of a row: its runs, the differing ones marked with the class of their edit.
void sideCell(XmlWriter& out, const std::u16string& text, const CharacterAlignment& alignment,
              bool truthSide) {
  out.startElement("td");
  out.startElement("div");
  out.attribute("class", "d");
  out.text("");
  for (const EditRun& run : alignment.runs) {
    const std::size_t start = truthSide ? run.truthStart : run.recognisedStart;
    const std::size_t length = truthSide ? run.truthLength : run.recognisedLength;
    if (length == 0) continue;
    out.startElement("span");
    switch (run.kind) {
      case EditKind::Match: break;
      case EditKind::Substitution: out.attribute("class", "sub"); break;
      case EditKind::Insertion: out.attribute("class", "ins"); break;
      case EditKind::Deletion: out.attribute("class", "del"); break;
    }
    out.text(xmlText(std::u16string_view(text).substr(start, length)));
    out.endElement();
  }
  out.endElement();
  out.endElement();
}

// A confusion's piece with its blanks made visible; nothing at all as a grey sign.
void pieceCell(XmlWriter& out, const std::u16string& piece) {
  out.startElement("td");
  out.startElement("span");
  if (piece.empty()) {
    out.attribute("class", "none");
    out.text("\u2205");
  } else {
    std::u16string shown = piece;
    for (char16_t& c : shown) {
      if (c == u' ') c = u'\u2423';
    }
    out.attribute("class", "p");
    out.text(xmlText(shown));
  }
  out.endElement();
  out.endElement();
}

std::string pageAnchor(const ReportPage& page) {
  return concat({"page-", std::to_string(page.number)});
}

std::string rowAnchor(const ReportPage& page, std::size_t row) {
  std::string anchor = pageAnchor(page);
  anchor += "-line-";
  anchor += std::to_string(row + 1);
  return anchor;
}

void writeSummary(XmlWriter& out, const ReportData& data) {
  std::size_t edits = 0, characters = 0;
  for (const ReportPage& page : data.pages) {
    edits += page.edits;
    characters += page.truthCharacters;
  }
  std::string text = std::to_string(data.pages.size());
  text += data.pages.size() == 1 ? " page compared by " : " pages compared by ";
  text += data.level;
  text += "; ";
  text += std::to_string(edits);
  text += edits == 1 ? " character edit over " : " character edits over ";
  text += std::to_string(characters);
  text += " ground-truth characters (";
  text += percent(edits, characters);
  text += " %).";
  out.startElement("p");
  out.text(text);
  out.endElement();
  out.startElement("p");
  out.attribute("class", "legend");
  out.text("Recognition against ground truth: ");
  element(out, "span", "kept");
  for (const auto& [kind, label] :
       {std::pair{"sub", "substituted"}, {"del", "missing"}, {"ins", "added"}}) {
    out.startElement("span");
    out.attribute("class", kind);
    out.text(label);
    out.endElement();
  }
  out.endElement();
}

void writePageTable(XmlWriter& out, const ReportData& data) {
  element(out, "h2", "Pages");
  out.startElement("table");
  out.attribute("id", "pages");
  out.attribute("class", "sortable");
  head(out,
       {"Page", "Lines", "Ground-truth characters", "Edits", "CER %", "Recognition rate", "F1"});
  out.startElement("tbody");
  for (const ReportPage& page : data.pages) {
    out.startElement("tr");
    out.startElement("td");
    out.attribute("class", "n");
    out.attribute("data-sort", std::to_string(page.number));
    out.startElement("a");
    out.attribute("href", concat({"#", pageAnchor(page)}));
    out.text(std::to_string(page.number));
    out.endElement();
    out.endElement();
    countCell(out, page.lines.size());
    countCell(out, page.truthCharacters);
    countCell(out, page.edits);
    const std::string cer = percent(page.edits, page.truthCharacters);
    cell(out, cer, cer);
    const std::string rate = fixed(page.recognitionRate, 4);
    cell(out, rate, rate);
    const std::string f1 = fixed(page.f1, 4);
    cell(out, f1, f1);
    out.endElement();
  }
  out.endElement();
  out.endElement();
}

void writeConfusions(XmlWriter& out, const ReportData& data) {
  element(out, "h2", "Most frequent confusions");
  if (data.confusions.empty()) {
    element(out, "p",
            "None: every difference was longer than a few characters, or there was none.");
    return;
  }
  out.startElement("table");
  out.attribute("id", "confusions");
  out.attribute("class", "sortable");
  head(out, {"Ground truth", "Recognised as", "Count"});
  out.startElement("tbody");
  for (const Confusion& confusion : data.confusions) {
    out.startElement("tr");
    pieceCell(out, confusion.truth);
    pieceCell(out, confusion.recognised);
    countCell(out, confusion.count);
    out.endElement();
  }
  out.endElement();
  out.endElement();
}

void writeBoxes(XmlWriter& out, const ReportPage& page) {
  if (page.width == 0 || page.height == 0) return;
  const double width = page.width, height = page.height;
  out.startElement("div");
  out.attribute("class", "page");
  out.attribute("style", concat({"padding-bottom:", fixed(100.0 * height / width, 3), "%"}));
  out.text("");
  if (!page.image.empty()) {
    if (const std::string uri = imageDataUri(page.image); !uri.empty()) {
      out.startElement("img");
      out.attribute("src", uri);
      out.attribute("alt", concat({"page ", std::to_string(page.number)}));
      out.endElement();
    }
  }
  for (const ReportBox& box : page.boxes) {
    const std::size_t edits = page.lines[box.line].alignment.edits;
    const std::string style =
        concat({"left:", fixed(100.0 * box.rect.left / width, 3),
                "%;top:", fixed(100.0 * box.rect.top / height, 3),
                "%;width:", fixed(100.0 * box.rect.width / width, 3),
                "%;height:", fixed(100.0 * box.rect.height / height, 3), "%"});
    out.startElement("a");
    out.attribute("class", edits == 0 ? "box" : "box bad");
    out.attribute("href", concat({"#", rowAnchor(page, box.line)}));
    out.attribute("style", style);
    out.attribute("title", concat({std::to_string(edits), edits == 1 ? " edit" : " edits"}));
    out.text("");  // an empty <a /> would stay open in HTML
    out.endElement();
  }
  out.endElement();
}

void writePage(XmlWriter& out, const ReportPage& page) {
  out.startElement("section");
  out.attribute("id", pageAnchor(page));
  element(out, "h2", concat({"Page ", std::to_string(page.number)}));
  out.startElement("table");
  out.attribute("class", "lines");
  head(out, {"Line", "Ground truth", "Recognition", "Edits"});
  out.startElement("tbody");
  for (std::size_t i = 0; i < page.lines.size(); ++i) {
    const ReportLine& line = page.lines[i];
    out.startElement("tr");
    out.attribute("id", rowAnchor(page, i));
    if (line.alignment.edits > 0) out.attribute("class", "bad");
    cell(out, std::to_string(i + 1));
    sideCell(out, line.truth, line.alignment, true);
    sideCell(out, line.recognised, line.alignment, false);
    out.startElement("td");
    out.attribute("class", "n e");
    out.text(std::to_string(line.alignment.edits));
    out.endElement();
    out.endElement();
  }
  out.endElement();
  out.endElement();
  writeBoxes(out, page);
  out.endElement();
}

}  // namespace

void writeReportHtml(const ReportData& data, base::Sink& sink) {
  sink.write("<!DOCTYPE html>\n");
  XmlWriter out(sink);
  out.startElement("html");
  out.attribute("lang", "en");
  out.startElement("head");
  out.startElement("meta");
  out.attribute("charset", "utf-8");
  out.endElement();
  element(out, "title", "Comparison report");
  out.startElement("style");
  out.markup(kStyle);
  out.endElement();
  out.endElement();
  out.startElement("body");
  element(out, "h1", "Comparison report");
  writeSummary(out, data);
  writePageTable(out, data);
  writeConfusions(out, data);
  for (const ReportPage& page : data.pages) writePage(out, page);
  out.startElement("script");
  out.markup(kScript);
  out.endElement();
  out.endElement();
  out.endElement();
  out.finish();
}

}  // namespace qent::text::layout::comparison::report
