// ComparisonReport.h - the visual report of a comparison, written to a file.
#pragma once

#include <filesystem>
#include <vector>

namespace qent::text::layout::comparison {
class Comparator;
}

namespace qent::text::layout::comparison::report {

// Builds the report of a finished comparison and writes it as HTML. The file appears
// complete or not at all: a failure leaves an earlier file of that name as it was. Page
// images named by the layouts are looked up as ReportBuilder.h says.
void writeComparisonReport(const Comparator& comparator, const std::filesystem::path& file,
                           const std::vector<std::filesystem::path>& imageFolders);

}  // namespace qent::text::layout::comparison::report
