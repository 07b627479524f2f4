// Page.h - one page of a layout: size, language, text angle and its place in the document.
#pragma once

#include "layout/Node.h"

#include <cstdint>
#include <string>

namespace qent::text::layout {

class Page : public Node {
public:
  Page() : Node(NodeClass::Page) {}
  ~Page() override;
  void accept(NodeVisitor& visitor) override;

  virtual std::uint32_t width() const { return width_; }
  virtual std::uint32_t height() const { return height_; }
  // A page property without meaning to the library's own operations; kept and copied.
  virtual std::uint32_t auxiliaryNumber() const { return auxiliaryNumber_; }
  // The page's position in the document it came from (kept when a page is cut out).
  virtual std::uint32_t indexInLayout() const { return indexInLayout_; }
  // Narrow (UTF-8) language code; empty when unknown.
  virtual const std::string& language() const { return language_; }
  virtual void setWidth(std::uint32_t width) { width_ = width; }
  virtual void setHeight(std::uint32_t height) { height_ = height; }
  virtual void setAuxiliaryNumber(std::uint32_t value) { auxiliaryNumber_ = value; }
  virtual void setIndexInLayout(std::uint32_t index) { indexInLayout_ = index; }
  virtual void setLanguage(std::string language) { language_ = std::move(language); }
  // Rotation of the page's text in degrees; 0 when unknown.
  virtual double textangle() const { return textangle_; }
  // A floating-point page property without meaning to the library; kept and copied.
  virtual double auxiliaryFloat() const { return auxiliaryFloat_; }
  virtual void setTextangle(double angle) { textangle_ = angle; }
  virtual void setAuxiliaryFloat(double value) { auxiliaryFloat_ = value; }

protected:
  Page(const Page&) = default;
  friend class ShallowCopier;
  friend class FaithfulCopier;

private:
  double textangle_ = 0;
  double auxiliaryFloat_ = 0;
  std::string language_;
  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
  std::uint32_t indexInLayout_ = 0;
  std::uint32_t auxiliaryNumber_ = 0;
};

}  // namespace qent::text::layout
