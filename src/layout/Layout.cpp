// Layout.cpp - document-level data and the split into single pages.
#include "layout/Layout.h"

#include "base/Unicode.h"
#include "layout/IteratorTemplate.h"
#include "layout/MoveSinglePageCopier.h"
#include "layout/Node.h"
#include "layout/Page.h"

namespace qent::text::layout {

Layout::Layout(std::unique_ptr<Node> root) : root_(std::move(root)) {}

Layout::~Layout() = default;

void Layout::setRoot(std::unique_ptr<Node> root) { root_ = std::move(root); }

std::vector<std::unique_ptr<Layout>> Layout::splitIntoPages() {
  std::vector<std::unique_ptr<Layout>> pages;
  if (!root_) return pages;
  std::uint32_t count = 0;
  for (IteratorTemplate<Page> it(root_.get()); !it.atEnd(); ++it) ++count;
  pages.reserve(count);
  for (std::uint32_t index = 0; index < count; ++index) {
    MoveSinglePageCopier copier(index);
    root_->accept(copier);
    pages.push_back(std::make_unique<Layout>(copier.takeResult()));
  }
  return pages;
}

void Layout::setVersions(Versions& versions) {
  versions_ = std::move(versions);
  versions.clear();
}

void Layout::addVersion(const std::u16string& name, const std::u16string& version) {
  versions_.emplace_back(base::utf16ToUtf8(name), base::utf16ToUtf8(version));
}

}  // namespace qent::text::layout
