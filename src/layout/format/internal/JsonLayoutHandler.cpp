// JsonLayoutHandler.cpp - SAX events of a JSON layout document to node records.
#include "layout/format/internal/JsonLayoutHandler.h"

#include "base/QentException.h"
#include "base/Unicode.h"
#include "layout/LayoutLimits.h"
#include "layout/format/LayoutKeys.h"

#include <stdexcept>
#include <string_view>

namespace qent::text::layout::format::internal {

namespace {

using base::QentException;

const char* const kAttributeFormat = "Invalid Attribute Format. Only Number and String are supported.";

QentException jsonError(const std::string& what) {
  return QentException(base::kErrorJson, "Failed to parse JSON layout: " + what);
}

// Built by appending: GCC 12 at -O3 reports "literal" + std::string&& as an overlapping
// memcpy (a false -Wrestrict).
std::string quotedKey(Member member) {
  std::string quoted = "\"";
  quoted.append(keyOf(member)).append("\"");
  return quoted;
}

}  // namespace

JsonLayoutHandler::JsonLayoutHandler(NodeBuilder& builder) : builder_(builder) {
  frames_.reserve(64);
}

bool JsonLayoutHandler::stopWith(Stop stop, std::string reason) {
  stop_ = stop;
  stopReason_ = std::move(reason);
  return false;
}

void JsonLayoutHandler::fail(std::exception_ptr error) {
  if (error_ == nullptr) error_ = std::move(error);
}

bool JsonLayoutHandler::enter() {
  if (++jsonDepth_ > kMaxJsonDepth) {
    return stopWith(Stop::Depth, "values nested deeper than " + std::to_string(kMaxJsonDepth) +
                                     " levels");
  }
  return true;
}

bool JsonLayoutHandler::text(const char* data, rapidjson::SizeType length, std::u16string& out) {
  try {
    out = base::utf8ToUtf16(std::string_view(data, length));
    return true;
  } catch (const std::invalid_argument& e) {
    // Only an escaped lone surrogate ("\udc00") gets here: the parser has checked the bytes.
    return stopWith(Stop::Syntax, std::string("a string is not valid Unicode (") + e.what() + ")");
  }
}

void JsonLayoutHandler::ignoreValue() {
  // A member whose value has the wrong kind counts as absent, even if it came before.
  if (frames_.back().kind == Frame::Node && member_ != Member::Unknown) record().unset(member_);
}

bool JsonLayoutHandler::Null() {
  if (skipping() || frames_.empty()) return skipping() || stopWith(Stop::Syntax, "not an object");
  switch (frames_.back().kind) {
    case Frame::Node: ignoreValue(); break;
    case Frame::Children:
      fail(jsonError("an element of \"children\" is not a node object"));
      break;
    case Frame::Polygon:
    case Frame::Point:
      fail(jsonError("a point of \"polygon\" is not an array of two numbers"));
      break;
    case Frame::Numbers:
      frames_.back().bad = true;
      ++frames_.back().count;
      break;
    case Frame::Document:
      if (rootKey_) fail(QentException(base::kErrorJson, "Root node is not found"));
      break;
    case Frame::Attributes:  // a null attribute is skipped
    case Frame::Skip: break;
  }
  return true;
}

bool JsonLayoutHandler::Bool(bool) {
  if (!skipping() && !frames_.empty() && frames_.back().kind == Frame::Attributes) {
    fail(std::invalid_argument(kAttributeFormat));
    return true;
  }
  return Null();
}

bool JsonLayoutHandler::String(const char* data, rapidjson::SizeType length, bool) {
  if (skipping()) return true;
  if (frames_.empty()) return stopWith(Stop::Syntax, "not an object");
  FrameState& frame = frames_.back();
  if (frame.kind == Frame::Attributes) {
    JsonAttribute& attribute = record().attributes.emplace_back();
    attribute.key = attributeKey_;
    attribute.key16 = attributeKey16_;
    return text(data, length, attribute.text);
  }
  if (frame.kind != Frame::Node || !isStringMember(member_)) return Null();
  JsonNodeRecord& r = record();
  r.set(member_);
  const std::string_view value(data, length);
  switch (member_) {
    case Member::Type: r.type.assign(value); return true;
    case Member::Id: return text(data, length, r.id);
    case Member::Text: return text(data, length, r.text);
    case Member::FontFamily: return text(data, length, r.fontFamily);
    case Member::Image: return text(data, length, r.image);
    case Member::ImageSource: return text(data, length, r.imageSource);
    case Member::FontStyle: r.fontStyle.assign(value); return true;
    case Member::FontWeight: r.fontWeight.assign(value); return true;
    case Member::Language: r.language.assign(value); break;
    case Member::XEntity: r.xEntity.assign(value); break;
    default: return true;
  }
  // Narrow texts are kept as UTF-8; check them like the wide ones.
  std::u16string check;
  return text(data, length, check);
}

bool JsonLayoutHandler::RawNumber(const char* data, rapidjson::SizeType length, bool) {
  if (skipping()) return true;
  if (frames_.empty()) return stopWith(Stop::Syntax, "not an object");
  const std::string_view number(data, length);
  FrameState& frame = frames_.back();
  try {
    switch (frame.kind) {
      case Frame::Node:
        if (!isNumberMember(member_)) return Null();
        record().numbers[static_cast<std::size_t>(member_)] =
            numberValue(number, keyOf(member_));
        record().set(member_);
        return true;
      case Frame::Attributes: {
        JsonAttribute& attribute = record().attributes.emplace_back();
        attribute.key = attributeKey_;
        attribute.key16 = attributeKey16_;
        attribute.isNumber = true;
        attribute.number.assign(number);
        return true;
      }
      case Frame::Numbers:
        ++frame.count;
        numbers_.push_back(numberValue(number, keyOf(frame.member)));
        return true;
      case Frame::Point: {
        const double value = truncatedValue(numberValue(number, LayoutKeys::kPolygon),
                                            -2147483648.0, 2147483648.0, LayoutKeys::kPolygon);
        if (frame.count < 2) numbers_.push_back(value);
        ++frame.count;
        return true;
      }
      default:
        return Null();
    }
  } catch (...) {
    fail(std::current_exception());
    return true;
  }
}

bool JsonLayoutHandler::startNode() {
  if (++nodeDepth_ > kMaxLayoutDepth) {
    return stopWith(Stop::Depth,
                    "nodes nested deeper than " + std::to_string(kMaxLayoutDepth) + " levels");
  }
  if (records_.size() < nodeDepth_) records_.emplace_back();
  record().reset();
  frames_.push_back(FrameState{Frame::Node});
  member_ = Member::Unknown;
  return true;
}

bool JsonLayoutHandler::StartObject() { return startContainer(true); }
bool JsonLayoutHandler::StartArray() { return startContainer(false); }

bool JsonLayoutHandler::startContainer(bool object) {
  if (!enter()) return false;
  if (skipping()) return true;
  if (frames_.empty()) {
    if (!object) return stopWith(Stop::Syntax, "the top level is not an object");
    // A second top-level value is a syntax error the parser reports itself.
    frames_.push_back(FrameState{Frame::Document});
    rootKey_ = false;
    return true;
  }
  FrameState& frame = frames_.back();
  switch (frame.kind) {
    case Frame::Skip:
      ++frame.count;
      return true;
    case Frame::Numbers:
      // A number list holding a container is bad, and the container is skipped.
      frame.bad = true;
      ++frame.count;
      return skipValue();
    default:
      return object ? startObjectIn(frame.kind) : startArrayIn(frame.kind);
  }
}

bool JsonLayoutHandler::skipValue() {
  frames_.push_back(FrameState{Frame::Skip});
  return true;
}

bool JsonLayoutHandler::startObjectIn(Frame kind) {
  switch (kind) {
    case Frame::Document:
      if (rootKey_) return startNode();
      break;
    case Frame::Node:
      if (member_ == Member::Attributes) {
        record().attributes.clear();
        record().attributeBaseline.clear();
        record().hasAttributeBaseline = false;
        record().set(Member::Attributes);
        frames_.push_back(FrameState{Frame::Attributes});
        return true;
      }
      ignoreValue();
      break;
    case Frame::Children:
      return startNode();
    case Frame::Attributes:
      fail(std::invalid_argument(kAttributeFormat));
      return true;
    case Frame::Polygon:
    case Frame::Point:
      fail(jsonError("a point of \"polygon\" is not an array of two numbers"));
      return true;
    default:
      break;
  }
  return skipValue();
}

bool JsonLayoutHandler::startArrayIn(Frame kind) {
  switch (kind) {
    case Frame::Document:
      if (rootKey_) {
        fail(QentException(base::kErrorJson, "Root node is not found"));
        return true;
      }
      break;
    case Frame::Node: {
      JsonNodeRecord& r = record();
      switch (member_) {
        case Member::Children:
          r.children.clear();
          r.set(Member::Children);
          frames_.push_back(FrameState{Frame::Children});
          return true;
        case Member::Polygon:
          r.polygon.clear();
          r.set(Member::Polygon);
          frames_.push_back(FrameState{Frame::Polygon});
          return true;
        case Member::Baseline:
        case Member::ColorRgb:
        case Member::BackgroundColorRgb:
          numbers_.clear();
          frames_.push_back(FrameState{Frame::Numbers, member_});
          return true;
        default:
          ignoreValue();
          break;
      }
      break;
    }
    case Frame::Attributes:
      if (attributeKey_ == LayoutKeys::kBaselineCoefficients) {
        numbers_.clear();
        frames_.push_back(FrameState{Frame::Numbers, Member::Attributes});
        return true;
      }
      fail(std::invalid_argument(kAttributeFormat));
      return true;
    case Frame::Children:
      fail(jsonError("an element of \"children\" is not a node object"));
      return true;
    case Frame::Polygon:
      numbers_.clear();
      frames_.push_back(FrameState{Frame::Point});
      return true;
    case Frame::Point:
      fail(jsonError("a point of \"polygon\" is not an array of two numbers"));
      return true;
    default:
      break;
  }
  return skipValue();
}

bool JsonLayoutHandler::Key(const char* data, rapidjson::SizeType length, bool) {
  if (skipping()) return true;
  const std::string_view key(data, length);
  switch (frames_.back().kind) {
    case Frame::Document: rootKey_ = key == LayoutKeys::kRoot; break;
    case Frame::Node: member_ = memberOf(key); break;
    case Frame::Attributes:
      attributeKey_.assign(key);
      return text(data, length, attributeKey16_);
    default: break;
  }
  return true;
}

void JsonLayoutHandler::finishNode() {
  std::unique_ptr<Node> node;
  try {
    node = builder_.build(record());
  } catch (...) {
    fail(std::current_exception());
  }
  frames_.pop_back();
  --nodeDepth_;
  if (node == nullptr) return;
  if (frames_.back().kind == Frame::Children) {
    record().children.push_back(std::move(node));
  } else {
    root_ = std::move(node);
  }
}

void JsonLayoutHandler::finishNumbers(const FrameState& frame) {
  JsonNodeRecord& r = record();
  if (frame.member == Member::Baseline || frame.member == Member::Attributes) {
    if (frame.bad) {
      if (frame.member == Member::Attributes) fail(std::invalid_argument(kAttributeFormat));
      else fail(jsonError("\"baseline\" holds a value that is not a number"));
      return;
    }
    if (frame.member == Member::Baseline) {
      r.baseline = numbers_;
      r.set(Member::Baseline);
    } else {
      r.attributeBaseline = numbers_;
      r.hasAttributeBaseline = true;
    }
    return;
  }
  // A colour is taken only from exactly three elements, which must then be numbers.
  if (frame.count != 3) return;
  if (frame.bad) {
    fail(jsonError("a component of " + quotedKey(frame.member) + " is not a number"));
    return;
  }
  try {
    Rgb color;
    std::uint8_t* const components[] = {&color.red, &color.green, &color.blue};
    for (int i = 0; i < 3; ++i) {
      *components[i] = static_cast<std::uint8_t>(
          truncatedValue(numbers_[i], 0, 256, keyOf(frame.member)));
    }
    (frame.member == Member::ColorRgb ? r.color : r.backgroundColor) = color;
    r.set(frame.member);
  } catch (...) {
    fail(std::current_exception());
  }
}

bool JsonLayoutHandler::EndObject(rapidjson::SizeType) {
  --jsonDepth_;
  if (skipping()) return true;
  FrameState& frame = frames_.back();
  switch (frame.kind) {
    case Frame::Node: finishNode(); break;
    case Frame::Skip:
      if (frame.count > 0) --frame.count;
      else frames_.pop_back();
      break;
    default: frames_.pop_back(); break;
  }
  return true;
}

bool JsonLayoutHandler::EndArray(rapidjson::SizeType) {
  --jsonDepth_;
  if (skipping()) return true;
  const FrameState frame = frames_.back();
  switch (frame.kind) {
    case Frame::Skip:
      if (frame.count > 0) --frames_.back().count;
      else frames_.pop_back();
      return true;
    case Frame::Point:
      frames_.pop_back();
      if (frame.count != 2) {
        fail(jsonError("a point of \"polygon\" is not an array of two numbers"));
      } else {
        record().polygon.push_back(Point{static_cast<std::int32_t>(numbers_[0]),
                                         static_cast<std::int32_t>(numbers_[1])});
      }
      return true;
    case Frame::Numbers:
      frames_.pop_back();
      finishNumbers(frame);
      return true;
    default:
      frames_.pop_back();
      return true;
  }
}

}  // namespace qent::text::layout::format::internal
