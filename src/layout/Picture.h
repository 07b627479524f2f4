// Picture.h - an image region inside a page, with the name of its source image.
#pragma once

#include "layout/Fragment.h"

#include <string>

namespace qent::text::layout {

class Picture : public Fragment {
public:
  Picture() : Fragment(NodeClass::Picture) {}
  ~Picture() override;
  void accept(NodeVisitor& visitor) override;

  const std::u16string& imageSource() const { return imageSource_; }
  void setImageSource(std::u16string source) { imageSource_ = std::move(source); }

protected:
  Picture(const Picture&) = default;
  friend class ShallowCopier;
  friend class FaithfulCopier;

private:
  std::u16string imageSource_;
};

}  // namespace qent::text::layout
