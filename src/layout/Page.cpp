// Page.cpp - visitor dispatch of Page.
#include "layout/Page.h"

#include "layout/NodeVisitor.h"

namespace qent::text::layout {

Page::~Page() = default;
void Page::accept(NodeVisitor& visitor) { visitor.visit(*this); }

}  // namespace qent::text::layout
