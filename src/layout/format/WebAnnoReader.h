// WebAnnoReader.h - reads the words of a WebAnno TSV document (and the sensitive marks
// WebAnnoWriter puts on them) back into a layout tree.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::format {

// Builds root (Content "node") > one Page "page_1" > a Line per sentence > a Word per token,
// in the order of the file; format code 2. Rows are split at "\n" and trimmed of ASCII white
// space at both ends:
//   - a row beginning with "#" is a header or sentence row; every "#Text=" row starts a
//     sentence, except that consecutive "#Text=" rows are the lines of one sentence text;
//   - an empty row separates sentences;
//   - any other row is a token row: token id, offsets, text and any further columns,
//     separated by tabs. The id ("3-7") must be digits "-" digits, the offsets ("0-5") too.
//     The token becomes Word "word_3_7" with the text of the third column (empty when the
//     row ends after the offsets: trimming took the empty text's tabs). Sub-token rows
//     ("3-7.1") repeat part of the token before them and are skipped. A row with a token
//     id but fewer than three columns as written (no text column) is skipped with a
//     warning in the trace log. Columns are split at tabs only: the escapes of feature
//     values ("\|", "\_", "\t" as two characters) never split a column.
//   - A token goes into the line of the current sentence; a token with another sentence
//     number than the line's first token, or one before any "#Text=" row, starts a further
//     line. Lines are named "line_1", "line_2", ... in order.
//   - With exactly four columns the fourth is the label: "_" leaves the word insensitive;
//     a label that holds "sensitive" in any case marks it (x_sensibility 1.0) and, when the
//     label holds "[E]" with E not blank, sets its entity to "other E" (E taken as written,
//     between the first "[" and the last "]"). Other labels mark nothing.
// Offsets and the other columns are not kept. A word whose text held a tab or line break
// cannot be read back, since the format writes texts without escaping.
//
// Errors (no layout is returned), all QentException 20001:
//   "WebAnno TSV: the text does not begin with a #FORMAT=WebAnno TSV header"
//   "WebAnno TSV: row N is not a token row ..."  (a bad token id or offsets)
//   "WebAnno TSV: row N is not valid UTF-8"
class WebAnnoReader {
public:
  std::unique_ptr<Layout> read(std::string_view utf8);
};

}  // namespace qent::text::layout::format
