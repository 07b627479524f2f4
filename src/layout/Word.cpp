// Word.cpp - visitor dispatch of Word.
#include "layout/Word.h"

#include "layout/NodeVisitor.h"

namespace qent::text::layout {

Word::~Word() = default;
void Word::accept(NodeVisitor& visitor) { visitor.visit(*this); }

}  // namespace qent::text::layout
