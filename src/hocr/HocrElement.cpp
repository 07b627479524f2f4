// HocrElement.cpp - title properties, style and XML attributes of one hOCR element.
#include "hocr/HocrElement.h"

#include "base/NumberConversion.h"
#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "base/xml/XmlText.h"
#include "base/xml/XmlWriter.h"
#include "hocr/HocrFields.h"
#include "hocr/HocrProperties.h"
#include "layout/Fragment.h"


#include <algorithm>
#include <array>

namespace qent::text::hocr {

namespace {

bool isAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// Names we write as XML attributes: plain ASCII names without a namespace prefix (an
// undeclared prefix would make the document unreadable to namespace-aware parsers), and
// none that the reader gives another meaning to.
bool isUsableAttributeName(std::string_view name) {
  if (name == "xml:lang") return true;
  if (name.empty() || !(isAsciiLetter(name[0]) || name[0] == '_')) return false;
  for (const char c : name) {
    if (!(isAsciiLetter(c) || (c >= '0' && c <= '9') || c == '_' || c == '-' || c == '.')) {
      return false;
    }
  }
  return name != "id" && name != "class" && name != "title" && !name.starts_with("xmlns");
}

// Attributes that belong on the element in HTML rather than in the hOCR title.
bool isHtmlAttribute(std::string_view name) {
  static constexpr std::array<std::string_view, 9> kNames = {
      "lang", "xml:lang", "dir", "align", "style", "href", "src", "alt", "name"};
  return std::find(kNames.begin(), kNames.end(), name) != kNames.end() ||
         name.starts_with("data-") || name.starts_with("aria-");
}

// Whether the reader's split (pieces at ";", trimmed, key up to the first blank) gives
// exactly this key and value back.
bool fitsTitle(std::string_view key, std::string_view value) {
  if (key.empty()) return value.empty();
  if (key.find_first_of(" ;") != std::string_view::npos || trimHocrSpace(key) != key) {
    return false;
  }
  return value.find(';') == std::string_view::npos && trimHocrSpace(value) == value;
}

std::string styleText(const layout::Fragment& fragment, std::string_view key) {
  auto rgb = [](const layout::Rgb& c) {
    return "rgb(" + std::to_string(c.red) + ", " + std::to_string(c.green) + ", " +
           std::to_string(c.blue) + ")";
  };
  if (key == "font-family") {
    std::string family = xmlText(fragment.fontFamily());
    std::replace(family.begin(), family.end(), ';', ',');
    return family;
  }
  if (key == "font-style") return std::string(fontStyleName(fragment.fontStyle()));
  if (key == "font-weight") return std::string(fontWeightName(fragment.fontWeight()));
  if (key == "font-size") {
    return fragment.fontSize() >= 0 ? base::formatShortest(fragment.fontSize()) + "pt" : "";
  }
  if (key == "color") return fragment.hasColor() ? rgb(fragment.color()) : "";
  return fragment.hasBackgroundColor() ? rgb(fragment.backgroundColor()) : "";
}

// Whether the reader, given this text for the key, sets the fragment's field as it is.
bool sameStyle(const layout::Fragment& fragment, std::string_view key, std::string_view text) {
  layout::Fragment read;
  try {
    applyStyleProperty(read, key, text);
  } catch (const std::exception&) {
    return false;
  }
  if (key == "font-family") return read.fontFamily() == fragment.fontFamily();
  if (key == "font-style") return read.fontStyle() == fragment.fontStyle();
  if (key == "font-weight") return read.fontWeight() == fragment.fontWeight();
  if (key == "font-size") return read.fontSize() == fragment.fontSize();
  if (key == "color") {
    return read.hasColor() == fragment.hasColor() &&
           (!read.hasColor() || read.color() == fragment.color());
  }
  return read.hasBackgroundColor() == fragment.hasBackgroundColor() &&
         (!read.hasBackgroundColor() || read.backgroundColor() == fragment.backgroundColor());
}

}  // namespace


HocrElement& HocrElement::reset(const layout::Node& node) {
  attributes_.size = 0;
  title_.size = 0;
  xmlAttributes_.size = 0;
  extra_.size = 0;
  style_.clear();
  hasStyle_ = hasFontStyle_ = hasDirection_ = false;
  bool cleaned = false;
  for (const auto& [key, value] : node.attributes()) {
    Attribute& attribute = attributes_.add();
    attribute.cleaned = assignXmlText(attribute.key, key);
    assignXmlText(attribute.value, value);
    attribute.claimed = false;
    attribute.dropped = false;
    cleaned = cleaned || attribute.cleaned;
  }
  if (cleaned) {
    // A key that lost characters XML cannot carry may now equal another key; the reader
    // would let the later one win. Keep the key that was written as it stood.
    for (Attribute& attribute : attributes_) {
      if (!attribute.cleaned) continue;
      for (const Attribute& other : attributes_) {
        if (&other != &attribute && other.key == attribute.key &&
            (!other.cleaned || &other < &attribute)) {
          attribute.dropped = true;
          break;
        }
      }
    }
  }
  return *this;
}

const std::string* HocrElement::claim(std::string_view key) {
  for (Attribute& attribute : attributes_) {
    if (!attribute.dropped && attribute.key == key) {
      attribute.claimed = true;
      return &attribute.value;
    }
  }
  return nullptr;
}

void HocrElement::addTitle(std::string_view key, std::string_view value) {
  Item& item = title_.add();
  item.key.assign(key);
  item.value.assign(value);
  std::replace(item.value.begin(), item.value.end(), ';', ',');
}

void HocrElement::generatedProperty(std::string_view key, std::string_view value) {
  claim(key);
  addTitle(key, value);
}

void HocrElement::xmlAttribute(std::string_view key, std::string_view value) {
  claim(key);
  Item& item = xmlAttributes_.add();
  item.key.assign(key);
  item.value.assign(value);
}

void HocrElement::fragmentStyle(const layout::Fragment& fragment) {
  // Most fragments have neither font nor colour: nothing to decide then.
  const bool anyField = !fragment.fontFamily().empty() || fragment.fontStyle() != 0 ||
                        fragment.fontWeight() != 0 || fragment.fontSize() >= 0 ||
                        fragment.hasColor() || fragment.hasBackgroundColor();
  const bool anyAttribute = std::any_of(attributes_.begin(), attributes_.end(), [](const Attribute& a) {
    return a.key == "style" || std::find(std::begin(kStyleKeys), std::end(kStyleKeys), a.key) !=
                                   std::end(kStyleKeys);
  });
  if (!anyField && !anyAttribute) return;

  // A stored title text that reads back as the field stays in the title, where it takes
  // precedence over the style; the style then only has to carry the other fields.
  std::array<std::string_view, std::size(kStyleKeys)> styleCarries;
  std::size_t carried = 0;
  for (const std::string_view key : kStyleKeys) {
    const std::string* stored = claim(key);
    if (stored != nullptr && !stored->empty() && sameStyle(fragment, key, *stored)) {
      addTitle(key, *stored);
    } else {
      styleCarries[carried++] = key;
    }
  }

  if (const std::string* stored = claim("style")) {
    PropertyMap style;
    style.addStyle(*stored);
    const bool same = std::all_of(styleCarries.begin(), styleCarries.begin() + carried, [&](auto key) {
      return sameStyle(fragment, key, style.take(key));
    });
    if (same) {
      style_ = *stored;
      hasStyle_ = true;
      return;
    }
  }
  for (std::size_t k = 0; k < carried; ++k) {
    const std::string_view key = styleCarries[k];
    const std::string text = styleText(fragment, key);
    if (text.empty()) continue;
    if (!style_.empty()) style_ += "; ";
    style_.append(key).append(": ").append(text);
    hasStyle_ = true;
  }
}

bool HocrElement::hasTitleProperty(std::string_view key) const {
  return std::any_of(title_.begin(), title_.end(), [&](const Item& item) { return item.key == key; });
}

bool HocrElement::hasTitlePropertyPrefix(std::string_view prefix) const {
  return std::any_of(title_.begin(), title_.end(),
                     [&](const Item& item) { return item.key.starts_with(prefix); });
}

void HocrElement::apply(base::xml::XmlWriter& writer, std::string_view element,
                        std::vector<std::string>& languages, bool warn) {
  for (const Attribute& attribute : attributes_) {
    if (attribute.claimed || attribute.dropped) continue;
    const std::string& key = attribute.key;
    const std::string& value = attribute.value;
    const bool title = fitsTitle(key, value);
    const bool xml = isUsableAttributeName(key) && (key != "style" || !hasStyle_);
    if (xml && (isHtmlAttribute(key) || !title)) {
      Item& item = extra_.add();
      item.key.assign(key);
      item.value.assign(value);
    } else if (title) {
      Item& item = title_.add();
      item.key.assign(key);
      item.value.assign(value);
    } else if (warn) {
      base::TraceLog::writeFormatted(base::kTraceWarning,
                                     "hOCR writer: attribute \"%s\" of element <%s> can be "
                                     "written neither in the title nor as XML attribute; left out",
                                     key.c_str(), std::string(element).c_str());
    }
  }

  if (title_.size > 0) {
    text_.clear();
    for (const Item& item : title_) {
      if (&item != title_.begin()) text_ += "; ";
      text_ += item.key;
      if (!item.value.empty()) text_.append(" ").append(item.value);
    }
    writer.attribute("title", text_);
  }
  if (hasStyle_) writer.attribute("style", style_);
  for (const Reused<Item>* list : {&xmlAttributes_, &extra_}) {
    for (const Item& item : *list) {
      writer.attribute(item.key, item.value);
      if (item.key == "lang" || item.key == "xml:lang") languages.push_back(item.value);
      if (item.key == "dir") hasDirection_ = true;
      if (item.key == "style" && item.value.find("font") != std::string::npos) hasFontStyle_ = true;
    }
  }
  if (hasStyle_ && style_.find("font") != std::string::npos) hasFontStyle_ = true;
}

}  // namespace qent::text::hocr
