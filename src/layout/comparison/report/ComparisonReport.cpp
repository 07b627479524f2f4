// ComparisonReport.cpp - build, write, commit.
#include "layout/comparison/report/ComparisonReport.h"

#include "base/FileSink.h"
#include "layout/comparison/report/ReportBuilder.h"
#include "layout/comparison/report/ReportHtmlWriter.h"

namespace qent::text::layout::comparison::report {

void writeComparisonReport(const Comparator& comparator, const std::filesystem::path& file,
                           const std::vector<std::filesystem::path>& imageFolders) {
  const ReportData data = buildReport(comparator, imageFolders);
  base::FileSink sink(file);
  writeReportHtml(data, sink);
  sink.commit();
}

}  // namespace qent::text::layout::comparison::report
