// FormatTable.h - every document format the library knows, in one table.
//
// An entry tells a format by its content, reads it into a layout and writes a layout in
// it; a format that can only be read or only be written leaves the other function null.
// The document reader and the output step are loops over this table, so adding a format
// is one entry here plus its reader and/or writer.
#pragma once

#include "io/ReadOptions.h"
#include "io/WriteOptions.h"
#include "base/FileIo.h"
#include "base/Sink.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace qent::text::layout {
class Layout;
}

namespace qent::io {

struct Format {
  std::uint32_t code;     // Layout::format() of what its reader makes; 0 when it reads nothing
  const char* name;       // as named in OutputFilename.Format, compared without regard to case
  const char* title;      // as named in messages
  const char* extension;  // of a file written beside others
  // True when the text (UTF-8, leading white space skipped) is of this format; tried in
  // table order, so a format whose test is a special case of another's comes first.
  bool (*sniff)(std::string_view text);
  // Reads the text (UTF-8), which it may change: the JSON layout, ALTO and PAGE readers
  // parse it in place, so a file is held once while its layout is built.
  std::unique_ptr<text::layout::Layout> (*read)(std::string& utf8, const ReadOptions& options);
  void (*write)(const text::layout::Layout& layout, base::Sink& sink, const WriteOptions& options);
  // Written only when the caller opts in (XmlLayoutFormats): without it the output formats
  // are exactly the documented ones. Reading needs no opt-in.
  bool optIn = false;
  // For a reader that can take a large file piece by piece: true when the file's beginning
  // (UTF-8, leading white space skipped) alone proves the format; then readStream gets that
  // beginning and the source of the rest. Null for the others, which read the whole text.
  bool (*headDecides)(std::string_view head) = nullptr;
  std::unique_ptr<text::layout::Layout> (*readStream)(std::string head, base::ByteSource& rest,
                                                      const ReadOptions& options) = nullptr;
};

// The format the text (UTF-8) is in, judged after its leading white space; null for plain
// text.
const Format* formatOfContent(std::string_view utf8);
// The format that can read the file whose beginning this is piece by piece; null when the
// beginning does not decide or the format's reader wants the whole text.
const Format* streamingFormatOf(std::string_view head);
// The format with a writer named so in OutputFilename.Format, the opt-in formats only when
// `xmlLayoutFormats`; the runtime error "unsupported output format specified" for any other
// name.
const Format& formatNamed(std::string_view name, bool xmlLayoutFormats = false);
// Writes the layout in the format, which must have a writer (formatNamed gives only such).
void writeLayout(const Format& format, const text::layout::Layout& layout, base::Sink& sink,
                 const WriteOptions& options = {});

}  // namespace qent::io
