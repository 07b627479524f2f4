// Content.h - a node of a kind the model does not know, kept with the type name it was read
// under and its text. Layout roots are Content nodes too (type name "node").
#pragma once

#include "layout/Node.h"

#include <string>

namespace qent::text::layout {

class Content : public Node {
public:
  Content() : Node(NodeClass::Content) {}
  ~Content() override;
  void accept(NodeVisitor& visitor) override;

  virtual const std::u16string& typeName() const { return typeName_; }
  virtual void setTypeName(std::u16string name) { typeName_ = std::move(name); }
  virtual const std::u16string& text() const { return text_; }
  virtual void setText(std::u16string text) { text_ = std::move(text); }

protected:
  Content(const Content&) = default;
  friend class ShallowCopier;
  friend class FaithfulCopier;

private:
  std::u16string typeName_;
  std::u16string text_;
};

}  // namespace qent::text::layout
