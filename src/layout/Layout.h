// Layout.h - one layout document: the owned tree and the document-level data.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace qent::text::layout {

class Node;

class Layout {
public:
  // Producers of the layout (OCR engine, version), narrow UTF-8, in the order added.
  using Versions = std::vector<std::pair<std::string, std::string>>;

  // Takes the root over; it may be null.
  explicit Layout(std::unique_ptr<Node> root = nullptr);
  Layout(const Layout&) = delete;
  Layout& operator=(const Layout&) = delete;
  virtual ~Layout();

  // The tree belongs to the layout; callers that only hold a const layout may still walk
  // (and let writers compute cached confidences on) the nodes.
  virtual Node* root() const { return root_.get(); }
  // One new layout per Page in document order, each holding a deep copy of the nodes
  // outside pages and that page with its subtree moved out of this layout. Afterwards this
  // layout's pages are empty: make it the last use of the layout.
  virtual std::vector<std::unique_ptr<Layout>> splitIntoPages();
  // Takes the sequence over, leaving the argument empty.
  virtual void setVersions(Versions& versions);
  // Stores both strings as UTF-8; duplicates are kept. Throws std::invalid_argument on
  // invalid UTF-16.
  virtual void addVersion(const std::u16string& name, const std::u16string& version);
  virtual const Versions& versions() const { return versions_; }

  std::unique_ptr<Node> takeRoot() { return std::move(root_); }
  void setRoot(std::unique_ptr<Node> root);

  // A document-level name; no operation of the library sets it, copies keep it.
  const std::u16string& documentName() const { return documentName_; }
  void setDocumentName(std::u16string name) { documentName_ = std::move(name); }

  // The format the layout was read from (4 for the JSON layout format; 0 when built in code).
  std::uint32_t format() const { return format_; }
  void setFormat(std::uint32_t format) { format_ = format; }

private:
  std::unique_ptr<Node> root_;
  Versions versions_;
  std::u16string documentName_;
  std::uint32_t format_ = 0;
};

}  // namespace qent::text::layout
