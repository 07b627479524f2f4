// ExtractionComparison.h - how well a recognition extracted the text of the zones that a
// reference defines, page by page.
//
// Both layouts are divided into their pages (document order, nested pages too, as the
// layout comparison divides them). Recognised page i is paired with reference page
// i + pageOffset; a page on either side without a partner is measured alone (see
// extractPage), so an extra or missing page costs what it holds. The pairs are listed by
// recognised page, a reference page without a partner where its recognised page would be.
// Neither layout is changed.
#pragma once

#include "layout/comparison/ExtractionOptions.h"
#include "layout/comparison/extraction/ExtractionResult.h"

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::comparison::extraction {

ExtractionResult compareExtraction(const ExtractionOptions& options, const Layout& main,
                                   const Layout& reference);

}  // namespace qent::text::layout::comparison::extraction
