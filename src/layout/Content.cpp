// Content.cpp - visitor dispatch of Content.
#include "layout/Content.h"

#include "layout/NodeVisitor.h"

namespace qent::text::layout {

Content::~Content() = default;
void Content::accept(NodeVisitor& visitor) { visitor.visit(*this); }

}  // namespace qent::text::layout
