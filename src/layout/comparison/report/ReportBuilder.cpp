// ReportBuilder.cpp - page pairs and records turned into rows, boxes and confusions.
#include "layout/comparison/report/ReportBuilder.h"

#include "base/Unicode.h"
#include "base/platform/platform.h"
#include "layout/Image.h"
#include "layout/Layout.h"
#include "layout/IteratorTemplate.h"
#include "layout/NodeClass.h"
#include "layout/NodeText.h"
#include "layout/Nodes.h"
#include "layout/TreeWalk.h"
#include "layout/comparison/Comparator.h"

#include <algorithm>
#include <system_error>
#include <unordered_map>

namespace qent::text::layout::comparison::report {

namespace {

// Calls fn on the node and on every node below it.
template <class Fn>
void forSubtree(Node& node, Fn&& fn) {
  fn(node);
  walkBelow(
      node,
      [&](Node& child, Node&) {
        fn(child);
        return true;
      },
      [](Node&) {});
}

// The page's lines in document order (a line inside a line is part of the outer one), or
// the page itself when it has none.
std::vector<Node*> lineUnits(Node& page) {
  std::vector<Node*> lines;
  walkBelow(
      page,
      [&](Node& node, Node&) {
        if (!isA<Line>(node)) return true;
        lines.push_back(&node);
        return false;
      },
      [](Node&) {});
  if (lines.empty()) lines.push_back(&page);
  return lines;
}

// A word's own text when it has one: the comparison's node text would repeat it with the
// texts of its glyphs.
std::u16string wordText(const Node& word) {
  const auto& own = static_cast<const Fragment&>(word).text();
  return own.empty() ? nodeText(word) : own;
}

// A line as a reader sees it: its words separated by blanks; a line without words reads as
// its node text.
std::u16string lineText(Node& line) {
  std::u16string text;
  bool anyWord = false;
  walkBelow(
      line,
      [&](Node& node, Node&) {
        if (!isA<Word>(node)) return true;
        if (anyWord) text += u' ';
        text += wordText(node);
        anyWord = true;
        return false;
      },
      [](Node&) {});
  return anyWord ? text : nodeText(line);
}

Rect rectOf(const Node& node) {
  return isA<Fragment>(node) ? static_cast<const Fragment&>(node).rect() : Rect{};
}

// The image file each page names: the first image inside the page, else the last one
// before it in document order (a layout of one page often names its image beside the page
// rather than in it).
std::unordered_map<const Node*, std::u16string> pageImages(Node* root) {
  std::unordered_map<const Node*, std::u16string> images;
  if (root == nullptr) return images;
  const std::u16string* last = nullptr;
  const auto visit = [&](Node& node) {
    if (isA<Image>(node)) {
      last = &static_cast<const Image&>(node).image();
    } else if (isA<Page>(node)) {
      IteratorTemplate<Image> inside(&node);
      if (!inside.atEnd()) {
        images.emplace(&node, inside->image());
      } else if (last != nullptr) {
        images.emplace(&node, *last);
      }
    }
  };
  // The root itself may be the page (a one-page hOCR document).
  forSubtree(*root, visit);
  return images;
}

std::filesystem::path findImage(std::u16string_view image,
                                const std::vector<std::filesystem::path>& folders) {
  // hOCR quotes names (and the layout keeps the quotes): "page 1.png".
  if (image.size() >= 2 && image.front() == u'"' && image.back() == u'"') {
    image = image.substr(1, image.size() - 2);
  }
  if (image.empty()) return {};
  // Leniently: a name that cannot be a file's (a lone surrogate) is simply not found.
  const std::filesystem::path name = base::platform::pathFromUtf8(base::utf16ToUtf8Lenient(image));
  std::error_code error;
  if (name.is_absolute()) {
    return std::filesystem::is_regular_file(name, error) ? name : std::filesystem::path{};
  }
  for (const auto& folder : folders) {
    const std::filesystem::path candidate = folder / name;
    if (std::filesystem::is_regular_file(candidate, error)) return candidate;
  }
  return {};
}

class PageBuilder {
public:
  PageBuilder(const Comparator& comparator, ConfusionCounter& confusions,
              const std::vector<std::filesystem::path>& imageFolders)
      : comparator_(comparator),
        confusions_(confusions),
        imageFolders_(imageFolders),
        recognisedImages_(pageImages(comparator.leftLayout().root())),
        truthImages_(pageImages(comparator.rightLayout().root())) {}

  ReportPage build(Node* recognisedPage, Node* truthPage, std::size_t number) {
    ReportPage page;
    page.number = number;
    const bool hasRecognition = !comparator_.isPlaceholder(recognisedPage);
    const bool hasTruth = !comparator_.isPlaceholder(truthPage);
    const std::vector<Node*> truthLines = hasTruth ? lineUnits(*truthPage) : std::vector<Node*>{};
    const std::vector<Node*> recognisedLines =
        hasRecognition ? lineUnits(*recognisedPage) : std::vector<Node*>{};

    std::unordered_map<const Node*, std::size_t> truthLineOf;
    for (std::size_t i = 0; i < truthLines.size(); ++i) {
      forSubtree(*truthLines[i], [&](Node& node) { truthLineOf.emplace(&node, i); });
    }
    page.lines.resize(truthLines.size());
    for (std::size_t i = 0; i < truthLines.size(); ++i)
      page.lines[i].truth = lineText(*truthLines[i]);
    for (Node* line : recognisedLines) {
      const std::size_t row = rowFor(*line, truthLineOf, page.lines);
      ReportLine& target = page.lines[row];
      if (!target.recognised.empty()) target.recognised += u' ';
      target.recognised += lineText(*line);
      if (const Rect rect = rectOf(*line); rect.width > 0 && rect.height > 0) {
        page.boxes.push_back({rect, row});
      }
    }
    for (ReportLine& line : page.lines) {
      line.alignment = alignCharacters(line.truth, line.recognised);
      confusions_.add(line.truth, line.recognised, line.alignment);
      page.truthCharacters += line.truth.size();
      page.edits += line.alignment.edits;
    }
    if (hasRecognition) {
      if (const NodeStatistics* stats = comparator_.statistics(recognisedPage)) {
        page.recognitionRate = stats->recognitionRate;
        page.f1 = stats->f1Measure;
      }
    }
    setSize(page, hasRecognition ? recognisedPage : truthPage);
    if (const auto found = recognisedImages_.find(recognisedPage);
        found != recognisedImages_.end()) {
      page.image = findImage(found->second, imageFolders_);
    }
    if (const auto found = truthImages_.find(truthPage);
        page.image.empty() && found != truthImages_.end()) {
      page.image = findImage(found->second, imageFolders_);
    }
    return page;
  }

private:
  // The row of the ground-truth line most of the line's paired nodes were paired into; a
  // new row at the end when none of them was paired.
  std::size_t rowFor(Node& line, const std::unordered_map<const Node*, std::size_t>& truthLineOf,
                     std::vector<ReportLine>& rows) const {
    std::unordered_map<std::size_t, std::size_t> votes;
    forSubtree(line, [&](Node& node) {
      const NodeStatistics* stats = comparator_.statistics(&node);
      if (stats == nullptr || stats->partner == nullptr) return;
      if (const auto found = truthLineOf.find(stats->partner); found != truthLineOf.end()) {
        ++votes[found->second];
      }
    });
    std::size_t best = rows.size(), bestVotes = 0;
    for (const auto& [row, count] : votes) {
      if (count > bestVotes || (count == bestVotes && row < best)) best = row, bestVotes = count;
    }
    if (bestVotes == 0) {
      rows.emplace_back();
      return rows.size() - 1;
    }
    return best;
  }

  // The page's own size, else the extent of the recognised lines.
  static void setSize(ReportPage& page, Node* node) {
    if (isA<Page>(*node)) {
      const auto& p = static_cast<const Page&>(*node);
      page.width = p.width();
      page.height = p.height();
    }
    if (page.width > 0 && page.height > 0) return;
    std::int64_t right = 0, bottom = 0;
    for (const ReportBox& box : page.boxes) {
      right = std::max(right, box.rect.right());
      bottom = std::max(bottom, box.rect.bottom());
    }
    page.width = static_cast<std::uint32_t>(std::min<std::int64_t>(right, UINT32_MAX));
    page.height = static_cast<std::uint32_t>(std::min<std::int64_t>(bottom, UINT32_MAX));
  }

  const Comparator& comparator_;
  ConfusionCounter& confusions_;
  const std::vector<std::filesystem::path>& imageFolders_;
  const std::unordered_map<const Node*, std::u16string> recognisedImages_;
  const std::unordered_map<const Node*, std::u16string> truthImages_;
};

}  // namespace

ReportData buildReport(const Comparator& comparator,
                       const std::vector<std::filesystem::path>& imageFolders) {
  ReportData data;
  data.level = std::string(levelResultName(comparator.level()));
  ConfusionCounter confusions;
  PageBuilder builder(comparator, confusions, imageFolders);
  std::size_t number = 0;
  for (const auto& [recognised, truth] : comparator.pagePairs()) {
    data.pages.push_back(builder.build(recognised, truth, ++number));
  }
  data.confusions = confusions.mostFrequent(kReportedConfusions);
  return data;
}

}  // namespace qent::text::layout::comparison::report
