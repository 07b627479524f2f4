// TextDecoding.h - the bytes of a plain-text input as UTF-16, in the encoding the job names.
//
// Auto: a byte-order mark decides (UTF-8, UTF-16 LE or BE); else valid UTF-8 is UTF-8 and
// anything else Windows-1252, the usual encoding of older OCR text files. An explicit
// UTF-8 input that is not valid, or UTF-16 with an odd number of bytes, is an error
// naming the input.
#pragma once

#include "wordrecognizer/RecognizerSettings.h"

#include <string>
#include <string_view>

namespace qent::text::wordrecognizer {

std::u16string decodeText(std::string_view bytes, TextEncoding encoding, const std::string& name);

}  // namespace qent::text::wordrecognizer
