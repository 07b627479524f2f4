// Glyph.cpp - visitor dispatch of Glyph.
#include "layout/Glyph.h"

#include "layout/NodeVisitor.h"

namespace qent::text::layout {

Glyph::~Glyph() = default;
void Glyph::accept(NodeVisitor& visitor) { visitor.visit(*this); }

}  // namespace qent::text::layout
