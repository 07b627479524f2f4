// JsonNodeRecord.h - the members of one node object of a JSON layout as the SAX handler
// collects them; the node is built from it once the object is complete, since "type" may
// come after the other members.
#pragma once

#include "layout/Fragment.h"
#include "layout/Node.h"

#include <bitset>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qent::text::layout::format::internal {

// The members of a node object the reader knows, in no particular order.
enum class Member : std::uint8_t {
  // Strings.
  Type, Id, Text, FontFamily, FontStyle, FontWeight, Language, Image, ImageSource, XEntity,
  // Numbers.
  Left, Top, Width, Height, Confidence, FontSize, Textangle, IndexInLayout, MaxAscenders,
  MaxDescenders, MaxGlyphHeight, XChecked, XRejected, XSensibility,
  // Containers.
  Attributes, Children, Polygon, Baseline, ColorRgb, BackgroundColorRgb,
  Unknown,
};

inline constexpr std::size_t kMemberCount = static_cast<std::size_t>(Member::Unknown);
inline constexpr Member kFirstNumber = Member::Left;
inline constexpr Member kFirstContainer = Member::Attributes;

inline bool isStringMember(Member m) { return m < kFirstNumber; }
inline bool isNumberMember(Member m) { return m >= kFirstNumber && m < kFirstContainer; }

// The member a key names, Member::Unknown for keys the reader ignores.
Member memberOf(std::string_view key);
// The key of a member, for messages.
std::string_view keyOf(Member member);

// A JSON number (in its JSON notation) as a double: values too small for a double become 0,
// values too large throw QentException 20039 naming the member.
double numberValue(std::string_view text, std::string_view member);
// printf's "%Lf" text of a JSON number: six decimals, exact for every number a long double
// holds. Throws QentException 20039 for numbers beyond the long double range.
std::string fixed6Text(std::string_view number);
// Truncates towards zero and checks the range [low, end); outside it throws
// QentException 20039 naming the member. The result converts to the target type safely.
double truncatedValue(double value, double low, double end, std::string_view member);

struct JsonAttribute {
  std::string key;       // UTF-8, as read
  std::u16string key16;  // the same key as stored in the tree
  bool isNumber = false;
  std::u16string text;   // string values
  std::string number;    // number values, in their JSON notation
};

struct JsonNodeRecord {
  std::bitset<kMemberCount> present;
  std::string type;
  // Texts kept as UTF-16 (index: Member value) and narrow ones kept as UTF-8.
  std::u16string id;
  std::u16string text;
  std::u16string fontFamily;
  std::u16string image;
  std::u16string imageSource;
  std::string fontStyle;
  std::string fontWeight;
  std::string language;
  std::string xEntity;
  double numbers[kMemberCount] = {};
  std::vector<JsonAttribute> attributes;
  std::vector<double> attributeBaseline;
  bool hasAttributeBaseline = false;
  std::vector<Point> polygon;
  std::vector<double> baseline;
  Rgb color;
  Rgb backgroundColor;
  Node::Children children;

  bool has(Member m) const { return present.test(static_cast<std::size_t>(m)); }
  void set(Member m) { present.set(static_cast<std::size_t>(m)); }
  void unset(Member m) { present.reset(static_cast<std::size_t>(m)); }
  double number(Member m) const { return numbers[static_cast<std::size_t>(m)]; }

  // Ready for the next node object; keeps the capacity of its containers.
  void reset() {
    present.reset();
    attributes.clear();
    attributeBaseline.clear();
    hasAttributeBaseline = false;
    polygon.clear();
    baseline.clear();
    children.clear();
  }
};

// Builds the node of a finished node object. May throw; the handler keeps the error.
class NodeBuilder {
public:
  virtual ~NodeBuilder() = default;
  virtual std::unique_ptr<Node> build(JsonNodeRecord& record) = 0;
};

}  // namespace qent::text::layout::format::internal
