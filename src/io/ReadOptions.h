// ReadOptions.h - what a caller asks of a reader beyond the bytes themselves.
//
// Every reader receives the same options and takes what concerns it, so an opt-in reading
// mode of one format needs no new way into the readers.
#pragma once

namespace qent::io {

struct ReadOptions {
  // hOCR as engines really write it: header, caption and floating-text lines, character
  // boxes, classes on any element, no ids as text, and HTML that is not XML
  // (PugiHocrReader's tolerant dialect). Off: the strict reading.
  bool tolerantHocr = false;
};

}  // namespace qent::io
