// Image.cpp - visitor dispatch of Image.
#include "layout/Image.h"

#include "layout/NodeVisitor.h"

namespace qent::text::layout {

Image::~Image() = default;
void Image::accept(NodeVisitor& visitor) { visitor.visit(*this); }

}  // namespace qent::text::layout
