// Box.cpp - box kinds and their type names.
#include "layout/Box.h"

#include "layout/NodeVisitor.h"

#include <array>

namespace qent::text::layout {

namespace {

constexpr std::u16string_view kGenericName = u"ocrx_box";

constexpr std::array<std::u16string_view, 25> kKindNames = {
    u"content_area",   u"ocrx_table_header_row", u"ocrx_table_cell", u"ocrx_table_body",
    u"ocrx_table_foot", u"ocrx_table_head",      u"ocrx_table_row",  u"ocrx_table",
    u"ocrx_form",      u"ocrx_h1",               u"ocrx_h2",         u"ocrx_h3",
    u"ocrx_h4",        u"ocrx_h5",               u"ocrx_h6",         u"ocrx_list",
    u"ocrx_list_item", u"ocrx_list_body",        u"ocrx_link",       u"ocrx_note",
    u"ocrx_lbl",
    // 21 and 22 have no name of their own.
    kGenericName, kGenericName,
    u"ocrx_span",      u"ocrx_artifact"};

}  // namespace

std::u16string_view Box::kindName(std::uint32_t kind) {
  return kind < kKindNames.size() ? kKindNames[kind] : kGenericName;
}

std::uint32_t Box::kindForName(std::u16string_view name) {
  for (std::uint32_t kind = 0; kind < kKindNames.size(); ++kind) {
    if (kKindNames[kind] == name) return kind;
  }
  return kCustomKind;
}

Box::~Box() = default;
void Box::accept(NodeVisitor& visitor) { visitor.visit(*this); }

const std::u16string& Box::typeName() const {
  if (boxKind_ != kCustomKind) boxTypeName_ = kindName(boxKind_);
  return boxTypeName_;
}

void Box::setTypeName(std::u16string name) {
  boxTypeName_ = std::move(name);
  boxKind_ = kCustomKind;
}

}  // namespace qent::text::layout
