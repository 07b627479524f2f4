// Line.h - a text line with its ascender, descender and glyph-height extremes.
#pragma once

#include "layout/Fragment.h"

namespace qent::text::layout {

// The three extremes are in pixels; 0 means not set.
class Line : public Fragment {
public:
  Line() : Fragment(NodeClass::Line) {}
  ~Line() override;
  void accept(NodeVisitor& visitor) override;

  virtual double maxAscenders() const { return maxAscenders_; }
  virtual void setMaxAscenders(double value) { maxAscenders_ = value; }
  virtual double maxDescenders() const { return maxDescenders_; }
  virtual void setMaxDescenders(double value) { maxDescenders_ = value; }
  virtual double maxGlyphHeight() const { return maxGlyphHeight_; }
  virtual void setMaxGlyphHeight(double value) { maxGlyphHeight_ = value; }

protected:
  Line(const Line&) = default;
  friend class ShallowCopier;
  friend class FaithfulCopier;

private:
  double maxAscenders_ = 0;
  double maxDescenders_ = 0;
  double maxGlyphHeight_ = 0;
};

}  // namespace qent::text::layout
