// Word.h - a word, with the marks a word check leaves on it.
#pragma once

#include "layout/Fragment.h"

#include <cstdint>

namespace qent::text::layout {

// x_checked and x_rejected are 0 when not set; non-zero marks the word as examined, or as
// rejected, by a word check.
class Word : public Fragment {
public:
  Word() : Fragment(NodeClass::Word) {}
  ~Word() override;
  void accept(NodeVisitor& visitor) override;

  virtual std::uint64_t xChecked() const { return xChecked_; }
  virtual void setXChecked(std::uint64_t value) { xChecked_ = value; }
  virtual std::uint64_t xRejected() const { return xRejected_; }
  virtual void setXRejected(std::uint64_t value) { xRejected_ = value; }

protected:
  Word(const Word&) = default;
  friend class ShallowCopier;
  friend class FaithfulCopier;

private:
  std::uint64_t xChecked_ = 0;
  std::uint64_t xRejected_ = 0;
};

}  // namespace qent::text::layout
