// Line.cpp - visitor dispatch of Line.
#include "layout/Line.h"

#include "layout/NodeVisitor.h"

namespace qent::text::layout {

Line::~Line() = default;
void Line::accept(NodeVisitor& visitor) { visitor.visit(*this); }

}  // namespace qent::text::layout
