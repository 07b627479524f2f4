// ShallowCopier.cpp - the shallow copies of the supported node classes.
#include "layout/ShallowCopier.h"

#include "layout/Nodes.h"

namespace qent::text::layout {

ShallowCopier::~ShallowCopier() = default;

// The classes' protected copy constructors copy their own fields and never the children.
void ShallowCopier::visit(Glyph& node) { result_.reset(new Glyph(node)); }
void ShallowCopier::visit(Word& node) { result_.reset(new Word(node)); }
void ShallowCopier::visit(Line& node) { result_.reset(new Line(node)); }
void ShallowCopier::visit(Box& node) { result_.reset(new Box(node)); }
void ShallowCopier::visit(Page& node) { result_.reset(new Page(node)); }
void ShallowCopier::visit(Image& node) { result_.reset(new Image(node)); }
void ShallowCopier::visit(Content& node) { result_.reset(new Content(node)); }

}  // namespace qent::text::layout
