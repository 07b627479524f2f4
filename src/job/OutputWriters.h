// OutputWriters.h - the output formats a job can write and the writer for each.
#pragma once

#include <string>
#include <string_view>

namespace qent::text::layout {
class Layout;
}

namespace qent::job {

enum class OutputFormat { Hocr, Json, WebAnno, PlainText, Html };

// The format of a name from OutputFilename.Format, compared without regard to case, in
// the order hocr, json, webanno, txtutf8, html; anything else is the runtime error
// "unsupported output format specified".
OutputFormat outputFormatFromName(std::string_view name);

// The extension used when several formats are written: "hocr", "json", "webAnno", "txt",
// "html".
const char* extensionOf(OutputFormat format);

// The layout as text (UTF-8) in the format.
std::string writeLayout(const text::layout::Layout& layout, OutputFormat format);

}  // namespace qent::job
