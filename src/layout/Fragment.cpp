// Fragment.cpp - visitor dispatch and the glyph-mean confidence of fragments.
#include "layout/Fragment.h"

#include "base/MeanOf.h"
#include "layout/IteratorTemplate.h"
#include "layout/NodeVisitor.h"


namespace qent::text::layout {

const FragmentDetails Fragment::kNoDetails;

Fragment::Fragment(const Fragment& other)
    : Node(other),
      text_(other.text_),
      rect_(other.rect_),
      confidence_(other.confidence_) {}

Fragment::~Fragment() = default;

std::unique_ptr<NodeExtras> Fragment::newExtras() const {
  return std::make_unique<FragmentDetails>();
}
void Fragment::accept(NodeVisitor& visitor) { visitor.visit(*this); }

double Fragment::confidence() const {
  if (confidence_ >= 0 || isA<Glyph>(*this)) return confidence_;
  base::MeanOf mean;
  // The iterator walks mutable nodes; nothing is changed through it.
  for (IteratorTemplate<Glyph> it(const_cast<Fragment*>(this)); !it.atEnd(); ++it) {
    const double value = it->confidence();
    if (value >= 0) mean.add(value);
  }
  if (mean.count() > 0) confidence_ = mean.mean();
  return confidence_;
}

}  // namespace qent::text::layout
