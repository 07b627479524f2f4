// Glyph.h - a single recognised character; it adds nothing to Fragment but its own visit.
#pragma once

#include "layout/Fragment.h"

namespace qent::text::layout {

class Glyph : public Fragment {
public:
  Glyph() : Fragment(NodeClass::Glyph) {}
  ~Glyph() override;
  void accept(NodeVisitor& visitor) override;

protected:
  Glyph(const Glyph&) = default;
  friend class ShallowCopier;
  friend class FaithfulCopier;
};

}  // namespace qent::text::layout
