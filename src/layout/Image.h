// Image.h - a reference to a page image by file name or path.
#pragma once

#include "layout/Node.h"

#include <string>

namespace qent::text::layout {

class Image : public Node {
public:
  Image() : Node(NodeClass::Image) {}
  ~Image() override;
  void accept(NodeVisitor& visitor) override;

  virtual const std::u16string& image() const { return image_; }
  virtual void setImage(std::u16string image) { image_ = std::move(image); }

protected:
  Image(const Image&) = default;
  friend class ShallowCopier;
  friend class FaithfulCopier;

private:
  std::u16string image_;
};

}  // namespace qent::text::layout
