// Box.h - a structural area (content area, table, cell, heading, list, ...) named by its kind.
#pragma once

#include "layout/Fragment.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qent::text::layout {

// The kind decides the type name: 0 "content_area", 1..24 the "ocrx_..." names of
// kindName(), 25 the name stored by setTypeName() (a kind the table does not know), and
// 21, 22 and everything above 25 the generic "ocrx_box".
class Box : public Fragment {
public:
  static constexpr std::uint32_t kContentArea = 0;
  static constexpr std::uint32_t kCustomKind = 25;

  // The table name of a kind; for kCustomKind (which has no table name) "ocrx_box".
  static std::u16string_view kindName(std::uint32_t kind);
  // The first kind whose table name is `name`, or kCustomKind when no kind has it.
  static std::uint32_t kindForName(std::u16string_view name);

  Box() : Fragment(NodeClass::Box) {}
  ~Box() override;
  void accept(NodeVisitor& visitor) override;

  // Unless the kind is kCustomKind, the name is recomputed from the kind (and stored)
  // first, so a name stored earlier does not outlive a change of kind.
  virtual const std::u16string& typeName() const;
  // Stores the name and switches the kind to kCustomKind, so the name is kept from now on.
  virtual void setTypeName(std::u16string name);

  std::uint32_t boxKind() const { return boxKind_; }
  void setBoxKind(std::uint32_t kind) { boxKind_ = kind; }

protected:
  Box(const Box&) = default;
  friend class ShallowCopier;
  friend class FaithfulCopier;

private:
  mutable std::u16string boxTypeName_;
  std::uint32_t boxKind_ = kContentArea;
};

}  // namespace qent::text::layout
