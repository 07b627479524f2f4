// ReportBuilder.h - the report's data from a finished comparison.
#pragma once

#include "layout/comparison/report/ReportData.h"

#include <filesystem>
#include <vector>

namespace qent::text::layout::comparison {
class Comparator;
}

namespace qent::text::layout::comparison::report {

// How many confusions the report lists.
inline constexpr std::size_t kReportedConfusions = 20;

// Reads the comparator's page pairs and records (the comparator must have compared; it is
// only borrowed). The recognition is the comparator's left layout, the ground truth its
// right one. Rows are the ground truth's lines in document order: each recognised line
// joins the ground-truth line that holds the partners of most of its compared nodes (the
// first such line on a tie), so a line the recognition split in two still shows as one row;
// recognised lines without any paired node follow as rows of their own. A page without
// line nodes is shown as one line. A page image named by the layout is looked up as given,
// then in each of `imageFolders`; one that is not found is left out.
ReportData buildReport(const Comparator& comparator,
                       const std::vector<std::filesystem::path>& imageFolders);

}  // namespace qent::text::layout::comparison::report
