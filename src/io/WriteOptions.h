// WriteOptions.h - what a caller asks of a writer beyond the layout itself.
//
// Every writer receives the same options and takes what concerns it, as the readers do with
// ReadOptions.
#pragma once

namespace qent::io {

struct WriteOptions {
  // WebAnno TSV offsets in UTF-16 code units, as WebAnno and INCEpTION count them, instead
  // of UTF-8 bytes.
  bool webAnnoUtf16Offsets = false;
};

}  // namespace qent::io
