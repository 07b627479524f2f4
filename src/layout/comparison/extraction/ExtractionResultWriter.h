// ExtractionResultWriter.h - the extraction comparison's results as JSON texts.
//
// The error rates (the CompareErrorRate result):
//   {"errorRate": 0.1, "maxErrorRate": 0.25, "pageErrorRates": [0.0, 0.25]}
// The details (the file the extraction comparison writes on request): the same members and "pages", one
// object per page pair in the same order:
//   {"count": 20, "errorRate": 0.25, "errors": 5, "mainPage": 1, "referencePage": 0,
//    "zones": [{"count": 8, "errors": 2, "extracted": "...", "id": "name",
//               "partialNodes": 0, "reference": "..."}]}
// with null for a page without partner. Page numbers count from 0, in document order.
// Members appear in ascending key order; doubles print in RapidJSON's notation, as in every
// JSON output of the library.
#pragma once

#include "layout/comparison/extraction/ExtractionResult.h"

#include <string>

namespace qent::text::layout::comparison::extraction {

std::string writeErrorRates(const ExtractionResult& result);
// Throws std::invalid_argument naming the zone when a text is not valid Unicode (a lone
// surrogate), instead of writing a document that no JSON reader accepts.
std::string writeExtractionDetails(const ExtractionResult& result);

}  // namespace qent::text::layout::comparison::extraction
