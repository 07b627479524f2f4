// Field.h - a form field; it adds nothing to Fragment but its own visit.
#pragma once

#include "layout/Fragment.h"

namespace qent::text::layout {

class Field : public Fragment {
public:
  Field() : Fragment(NodeClass::Field) {}
  ~Field() override;
  void accept(NodeVisitor& visitor) override;

protected:
  Field(const Field&) = default;
  friend class ShallowCopier;
  friend class FaithfulCopier;
};

}  // namespace qent::text::layout
