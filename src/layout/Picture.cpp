// Picture.cpp - visitor dispatch of Picture.
#include "layout/Picture.h"

#include "layout/NodeVisitor.h"

namespace qent::text::layout {

Picture::~Picture() = default;
void Picture::accept(NodeVisitor& visitor) { visitor.visit(*this); }

}  // namespace qent::text::layout
