// JsonLayoutHandler.h - the SAX handler that turns the events of a JSON layout document into
// node records and hands each finished record to the node builder.
#pragma once

#include "layout/Node.h"
#include "layout/format/internal/JsonNodeRecord.h"

#include <rapidjson/reader.h>

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace qent::text::layout::format::internal {

// Deepest nesting of JSON values accepted. A node at layout depth d stands at JSON depth
// 2d (document object, then a children array and an object per level); the margin covers
// the members inside a node and foreign members the reader skips.
inline constexpr std::size_t kMaxJsonDepth = 2 * 1000 + 64;

// Used with RapidJSON's iterative parser and numbers delivered as text. Stops the parse
// (returns false) for text that cannot be a layout document at all: a top level that is not
// an object, a string that is not valid UTF-8 after unescaping, nesting beyond the limits.
// Any other fault (wrong member kinds, bad values, missing "type") is kept as the first
// error and the rest of the document is only checked for syntax, so that a document that
// is not JSON at all is reported as such first.
class JsonLayoutHandler
    : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, JsonLayoutHandler> {
public:
  enum class Stop { None, Syntax, Depth };

  explicit JsonLayoutHandler(NodeBuilder& builder);

  bool Null();
  bool Bool(bool value);
  bool RawNumber(const char* text, rapidjson::SizeType length, bool copy);
  bool String(const char* text, rapidjson::SizeType length, bool copy);
  bool StartObject();
  bool Key(const char* text, rapidjson::SizeType length, bool copy);
  bool EndObject(rapidjson::SizeType memberCount);
  bool StartArray();
  bool EndArray(rapidjson::SizeType elementCount);
  // Numbers always arrive through RawNumber; these only satisfy the handler concept.
  bool Int(int) { return stopWith(Stop::Syntax); }
  bool Uint(unsigned) { return stopWith(Stop::Syntax); }
  bool Int64(std::int64_t) { return stopWith(Stop::Syntax); }
  bool Uint64(std::uint64_t) { return stopWith(Stop::Syntax); }
  bool Double(double) { return stopWith(Stop::Syntax); }

  Stop stop() const { return stop_; }
  const std::string& stopReason() const { return stopReason_; }
  // The first fault found in a syntactically sound part of the document, if any.
  std::exception_ptr error() const { return error_; }
  // The node of the last "root" member that was an object.
  std::unique_ptr<Node> takeRoot() { return std::move(root_); }

private:
  enum class Frame : std::uint8_t {
    Document, Node, Attributes, Children, Polygon, Point, Numbers, Skip
  };
  struct FrameState {
    Frame kind;
    Member member = Member::Unknown;  // Numbers: which array is read
    std::size_t count = 0;  // Skip: open containers; Point, Numbers: elements seen
    bool bad = false;                 // Numbers: an element was not a number
  };

  bool stopWith(Stop stop, std::string reason = {});
  bool enter();  // accounts for a container that starts; false when too deep
  void fail(std::exception_ptr error);
  template <class E>
  void fail(const E& error) {
    fail(std::make_exception_ptr(error));
  }
  bool skipping() const { return error_ != nullptr; }
  JsonNodeRecord& record() { return records_[nodeDepth_ - 1]; }
  bool startNode();
  // Objects and arrays share the depth accounting, the skipping and the number lists;
  // what a container means where it starts differs, in startObjectIn and startArrayIn,
  // which are given the kind of the enclosing frame.
  bool startContainer(bool object);
  bool startObjectIn(Frame kind);
  bool startArrayIn(Frame kind);
  // Skips a value no frame takes, with all it contains.
  bool skipValue();
  void finishNode();
  void finishNumbers(const FrameState& frame);
  // For a value of a kind the current member does not take: treated as absent.
  void ignoreValue();
  bool text(const char* text, rapidjson::SizeType length, std::u16string& out);

  NodeBuilder& builder_;
  std::vector<FrameState> frames_;
  std::vector<JsonNodeRecord> records_;
  std::size_t nodeDepth_ = 0;
  std::size_t jsonDepth_ = 0;
  bool rootKey_ = false;
  Member member_ = Member::Unknown;
  std::string attributeKey_;
  std::u16string attributeKey16_;
  std::vector<double> numbers_;
  Stop stop_ = Stop::None;
  std::string stopReason_;
  std::exception_ptr error_;
  std::unique_ptr<Node> root_;
};

}  // namespace qent::text::layout::format::internal
