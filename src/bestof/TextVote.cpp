// TextVote.cpp - majority of whole texts, else a vote per aligned character.
#include "bestof/TextVote.h"

#include "layout/comparison/EditDistance.h"

#include <algorithm>
#include <map>
#include <vector>

namespace qent::bestof {

namespace {

// Longer texts are not words but whole lines a recognizer failed to split; aligning them
// cell by cell would cost too much for what it brings, so the backbone is kept as it is.
constexpr std::size_t kMaxAlignmentCells = std::size_t{1} << 20;

struct Reading {
  std::u16string_view text;
  std::size_t votes = 0;
  double confidence = 0;
  std::uint32_t firstInput = 0;
};

// Distinct texts, best first: more ballots, higher summed confidence, earlier input.
std::vector<Reading> rankReadings(std::span<const Ballot> ballots) {
  std::vector<Reading> readings;
  for (const Ballot& ballot : ballots) {
    auto found = std::find_if(readings.begin(), readings.end(),
                              [&](const Reading& r) { return r.text == ballot.text; });
    if (found == readings.end()) {
      readings.push_back({ballot.text, 0, 0, ballot.input});
      found = readings.end() - 1;
    }
    ++found->votes;
    found->confidence += std::max(ballot.confidence, 0.0);
    found->firstInput = std::min(found->firstInput, ballot.input);
  }
  std::stable_sort(readings.begin(), readings.end(), [](const Reading& a, const Reading& b) {
    if (a.votes != b.votes) return a.votes > b.votes;
    if (a.confidence != b.confidence) return a.confidence > b.confidence;
    return a.firstInput < b.firstInput;
  });
  return readings;
}

// For each backbone position, what `other` has there (empty: deleted), and for each of the
// backbone's m + 1 gaps what `other` inserts there. A plain Levenshtein table with traceback;
// substitutions are preferred over insert/delete pairs on equal cost.
struct Alignment {
  std::vector<std::u16string> at;
  std::vector<std::u16string> gap;
};

Alignment align(std::u16string_view backbone, std::u16string_view other) {
  const std::size_t m = backbone.size();
  const std::size_t n = other.size();
  std::vector<std::uint32_t> cost((m + 1) * (n + 1));
  auto cell = [&](std::size_t i, std::size_t j) -> std::uint32_t& { return cost[i * (n + 1) + j]; };
  for (std::size_t i = 0; i <= m; ++i) cell(i, 0) = static_cast<std::uint32_t>(i);
  for (std::size_t j = 0; j <= n; ++j) cell(0, j) = static_cast<std::uint32_t>(j);
  for (std::size_t i = 1; i <= m; ++i) {
    for (std::size_t j = 1; j <= n; ++j) {
      const std::uint32_t substitute = cell(i - 1, j - 1) + (backbone[i - 1] == other[j - 1] ? 0 : 1);
      cell(i, j) = std::min({substitute, cell(i - 1, j) + 1, cell(i, j - 1) + 1});
    }
  }
  Alignment result{std::vector<std::u16string>(m), std::vector<std::u16string>(m + 1)};
  std::size_t i = m;
  std::size_t j = n;
  while (i > 0 || j > 0) {
    if (i > 0 && j > 0 &&
        cell(i, j) == cell(i - 1, j - 1) + (backbone[i - 1] == other[j - 1] ? 0 : 1)) {
      result.at[i - 1] = other[j - 1];
      --i;
      --j;
    } else if (i > 0 && cell(i, j) == cell(i - 1, j) + 1) {
      --i;  // deleted: at[i] stays empty
    } else {
      result.gap[i].insert(result.gap[i].begin(), other[j - 1]);
      --j;
    }
  }
  return result;
}

// The reading most voters give; the backbone's own (first) reading wins a tie.
const std::u16string& majority(const std::vector<const std::u16string*>& votes) {
  std::map<std::u16string_view, std::size_t> counts;
  for (const std::u16string* vote : votes) ++counts[*vote];
  const std::u16string* best = votes.front();
  std::size_t bestCount = counts[*best];
  for (const std::u16string* vote : votes) {
    if (counts[*vote] > bestCount) {
      best = vote;
      bestCount = counts[*vote];
    }
  }
  return *best;
}

}  // namespace

std::u16string voteText(std::span<const Ballot> ballots) {
  if (ballots.empty()) return {};
  const std::vector<Reading> readings = rankReadings(ballots);
  if (readings.front().votes * 2 > ballots.size() || readings.size() == 1) {
    return std::u16string(readings.front().text);
  }

  // The backbone: the reading with the smallest summed distance to all ballots.
  const Reading* backbone = &readings.front();
  std::size_t bestSum = SIZE_MAX;
  for (const Reading& candidate : readings) {
    std::size_t sum = 0;
    for (const Reading& other : readings) {
      sum += other.votes * text::layout::comparison::editDistance(candidate.text, other.text);
    }
    if (sum < bestSum) {
      bestSum = sum;
      backbone = &candidate;
    }
  }
  const std::u16string_view base = backbone->text;
  std::vector<std::pair<Alignment, std::size_t>> aligned;  // with the number of ballots
  for (const Reading& reading : readings) {
    if (&reading == backbone) continue;
    if ((base.size() + 1) * (reading.text.size() + 1) > kMaxAlignmentCells) {
      return std::u16string(base);
    }
    aligned.emplace_back(align(base, reading.text), reading.votes);
  }

  std::u16string result;
  const std::u16string empty;
  std::vector<const std::u16string*> votes;
  std::vector<std::u16string> own(base.size());
  for (std::size_t i = 0; i < base.size(); ++i) own[i] = base[i];
  for (std::size_t i = 0; i <= base.size(); ++i) {
    votes.assign(backbone->votes, &empty);
    for (const auto& [alignment, count] : aligned) votes.insert(votes.end(), count, &alignment.gap[i]);
    result += majority(votes);
    if (i == base.size()) break;
    votes.assign(backbone->votes, &own[i]);
    for (const auto& [alignment, count] : aligned) votes.insert(votes.end(), count, &alignment.at[i]);
    result += majority(votes);
  }
  return result;
}

}  // namespace qent::bestof
