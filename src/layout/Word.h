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

  virtual std::uint64_t xChecked() const { return details().xChecked; }
  virtual void setXChecked(std::uint64_t value) { change(&FragmentDetails::xChecked, value); }
  virtual std::uint64_t xRejected() const { return details().xRejected; }
  virtual void setXRejected(std::uint64_t value) { change(&FragmentDetails::xRejected, value); }

protected:
  Word(const Word&) = default;
  friend class ShallowCopier;
  friend class FaithfulCopier;
};

}  // namespace qent::text::layout
