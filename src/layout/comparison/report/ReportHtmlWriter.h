// ReportHtmlWriter.h - a comparison report as one self-contained HTML page.
#pragma once

namespace qent::base {
class Sink;
}

namespace qent::text::layout::comparison::report {

struct ReportData;

// Writes the whole page into the sink: a sortable table of pages, the most frequent
// confusions, then per page its rows (ground truth and recognition side by side, differing
// characters coloured, the edits of each row) and the recognised lines' boxes over the page
// image. Style and script are inline and images embedded, so the file opens anywhere
// without a network. Texts are made XML-safe (forbidden characters dropped, unpaired
// surrogates replaced) and escaped.
void writeReportHtml(const ReportData& data, base::Sink& sink);

}  // namespace qent::text::layout::comparison::report
