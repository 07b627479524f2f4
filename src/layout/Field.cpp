// Field.cpp - visitor dispatch of Field.
#include "layout/Field.h"

#include "layout/NodeVisitor.h"

namespace qent::text::layout {

Field::~Field() = default;
void Field::accept(NodeVisitor& visitor) { visitor.visit(*this); }

}  // namespace qent::text::layout
