// OutputWriters.cpp - dispatch from output format to writer.
#include "job/OutputWriters.h"

#include "base/QentException.h"
#include "base/Unicode.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "hocr/HocrWriter.h"
#include "layout/format/JSONWriter.h"
#include "layout/format/PlainTextWriter.h"
#include "layout/format/WebAnnoWriter.h"

#include <stdexcept>

namespace qent::job {

OutputFormat outputFormatFromName(std::string_view name) {
  if (base::equalsIgnoreAsciiCase(name, "hocr")) return OutputFormat::Hocr;
  if (base::equalsIgnoreAsciiCase(name, "json")) return OutputFormat::Json;
  if (base::equalsIgnoreAsciiCase(name, "webanno")) return OutputFormat::WebAnno;
  if (base::equalsIgnoreAsciiCase(name, "txtutf8")) return OutputFormat::PlainText;
  if (base::equalsIgnoreAsciiCase(name, "html")) return OutputFormat::Html;
  throw std::runtime_error("unsupported output format specified");
}

const char* extensionOf(OutputFormat format) {
  switch (format) {
    case OutputFormat::Hocr: return "hocr";
    case OutputFormat::Json: return "json";
    case OutputFormat::WebAnno: return "webAnno";
    case OutputFormat::PlainText: return "txt";
    case OutputFormat::Html: return "html";
  }
  return "";
}

namespace {

[[noreturn]] void unavailableWriter(const char* what) {
  throw base::QentException(base::kErrorOption,
                            std::string(what) + " output is not available in this build");
}

}  // namespace

std::string writeLayout(const text::layout::Layout& layout, OutputFormat format) {
  switch (format) {
    case OutputFormat::Json:
      return text::layout::format::JSONWriter().write(layout);
    case OutputFormat::Hocr:
      return text::hocr::HocrWriter().write(layout);
    case OutputFormat::WebAnno:
      return text::layout::format::WebAnnoWriter().write(layout);
    case OutputFormat::PlainText:
      return base::utf16ToUtf8(text::layout::format::PlainTextWriter().write(layout));
    case OutputFormat::Html:
      unavailableWriter("HTML");
  }
  throw std::logic_error("unknown output format");
}

}  // namespace qent::job
