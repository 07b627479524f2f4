// CompareVerb.cpp - `ormida compare GT OCR`: one pair of documents, or two folders paired by
// name stem on a pool of threads with a summary of counts.
#include "Batch.h"
#include "CompareSummary.h"
#include "CorpusSummary.h"
#include "Progress.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <iostream>
#include <optional>

namespace ormida::cli {

namespace {

namespace fs = std::filesystem;

class CompareVerb : public Verb {
public:
  explicit CompareVerb(CLI::App& app) {
    command_ = app.add_subcommand(
        "compare", "compare a recognition with its ground truth (two files, or two folders "
                   "whose files pair by name stem)");
    command_->add_option("GT", truth_, "ground truth file or folder")->required();
    command_->add_option("OCR", recognition_, "recognition file or folder")->required();
    command_->add_option("--level", level_, "nodes paired and compared")
        ->check(CLI::IsMember({"glyph", "word", "line"}))
        ->default_str("word");
    command_->add_option("--mode", mode_, "compare texts or entity annotations")
        ->check(CLI::IsMember({"text", "entity"}))
        ->default_str("text");
    command_->add_option("--normalize", normalize_,
                         "Unicode normalisation before counting characters and words")
        ->check(CLI::IsMember({"none", "nfc", "nfkc"}))
        ->default_str("none");
    command_->add_flag("--graphemes", graphemes_,
                       "count user-perceived characters (grapheme clusters), not code points");
    command_->add_option("--align", align_,
                         "how the recognition is moved onto the ground truth before pairing: "
                         "by the corners or the centre of their text, or not at all (none: "
                         "both in the pixels of one scan, e.g. a PAGE or ALTO ground truth "
                         "that covers only part of the page)")
        ->check(CLI::IsMember({"corner", "center", "none"}))
        ->default_str("corner");
    command_->add_option("--report", report_, "write the visual HTML report to this file");
    command_->add_option("--json", json_,
                         "write the result JSON (for folders: the summary JSON) to this file");
    command_->add_option("--csv", csv_, "for folders: write the summary CSV to this file");
    command_->add_option("-j,--jobs", threads_, "for folders: documents compared at once")
        ->default_str("the number of cores")
        ->check(CLI::Range(1, 1024));
    command_->add_flag("--strict", strict_,
                       "read hOCR strictly (default: tolerant, as engines write it)");
  }

  bool chosen() const override { return command_->parsed(); }

  int run() override {
    const bool truthFolder = fs::is_directory(utf8Path(truth_));
    const bool recognitionFolder = fs::is_directory(utf8Path(recognition_));
    if (truthFolder != recognitionFolder) {
      std::cerr << "ormida compare: GT and OCR must both be files or both be folders\n";
      return kExitUsage;
    }
    if (truthFolder) return runFolders();
    for (const std::string* path : {&truth_, &recognition_}) {
      if (const std::string why = unusableInputName(*path); !why.empty()) {
        std::cerr << "ormida compare: " << *path << ": " << why << "\n";
        return kExitUsage;
      }
    }
    Properties properties = jobProperties(truth_, recognition_);
    if (!json_.empty()) properties.emplace_back("Compare.OutputFilename", json_);
    const JobOutcome outcome = runJob(properties, "Compare.Result", true);
    if (!outcome.ok) {
      std::cerr << "ormida compare: " << outcome.error << "\n";
      return kExitFailed;
    }
    std::cout << compareSummary(outcome.result);
    if (!json_.empty()) std::cout << "\nFull result: " << json_ << "\n";
    if (!report_.empty()) std::cout << "Report: " << report_ << "\n";
    return kExitOk;
  }

private:
  Properties jobProperties(const std::string& truth, const std::string& recognition) const {
    Properties properties = {{"InputFilename", recognition},
                             {"Compare", "true"},
                             {"Compare.With", truth},
                             {"Compare.Level", level_},
                             {"Compare.Mode", mode_},
                             {"Compare.Normalization", normalize_},
                             {"Compare.TransformStrategy", align_}};
    if (graphemes_) properties.emplace_back("Compare.Graphemes", "true");
    if (!strict_) properties.emplace_back("TolerantHocr", "true");
    if (!report_.empty()) properties.emplace_back("ComparisonReportFilename", report_);
    return properties;
  }

  int runFolders() {
    if (!report_.empty()) {
      std::cerr << "ormida compare: --report takes one pair of files, not folders\n";
      return kExitUsage;
    }
    const Pairing pairing = pairByStem(utf8Path(truth_), utf8Path(recognition_));
    for (const std::string& problem : pairing.problems) std::cerr << "ormida: " << problem << "\n";
    const std::size_t count = pairing.pairs.size();
    // Each slot is written by the one thread that ran its pair, read after all have joined.
    std::vector<std::optional<DocumentCounts>> counts(count);
    std::vector<std::string> errors(count);
    Progress progress(count, standardErrorIsTerminal(), std::cerr);
    runOnThreads(count, threads_ != 0 ? threads_ : defaultThreads(), [&](std::size_t i) {
      const FilePair& pair = pairing.pairs[i];
      try {
        std::string why = unusableInputName(utf8Name(pair.truth));
        if (why.empty()) why = unusableInputName(utf8Name(pair.recognition));
        JobOutcome outcome;
        if (why.empty()) {
          outcome = runJob(jobProperties(utf8Name(pair.truth), utf8Name(pair.recognition)),
                           "Compare.Result");
        } else {
          outcome.error = why;
        }
        if (outcome.ok) {
          DocumentCounts document = countsFromResult(outcome.result);
          document.name = pair.name;
          document.truth = utf8Name(pair.truth.filename());
          document.recognition = utf8Name(pair.recognition.filename());
          counts[i] = std::move(document);
          return;
        }
        errors[i] = outcome.error;
      } catch (const std::exception& e) {
        errors[i] = e.what();
      }
      progress.note("ormida: " + pair.name + " failed: " + errors[i]);
    }, progress);

    CorpusSummary summary;
    summary.level = level_;
    summary.normalization = normalize_;
    summary.unit = graphemes_ ? "grapheme" : "codepoint";
    summary.withWords = level_ != "glyph";
    for (std::size_t i = 0; i < count; ++i) {
      if (counts[i]) {
        summary.documents.push_back(std::move(*counts[i]));
      } else {
        summary.failed.push_back({pairing.pairs[i].name, errors[i]});
      }
    }
    std::cout << totalsText(summary);
    int status = summary.failed.empty() ? kExitOk : kExitFailed;
    for (const auto& [path, text] :
         {std::pair{json_, &summaryToJson}, std::pair{csv_, &summaryToCsv}}) {
      if (path.empty()) continue;
      if (!writeFileAtomically(path, text(summary))) {
        std::cerr << "ormida compare: cannot write " << path << "\n";
        status = kExitFailed;
      }
    }
    return status;
  }

  CLI::App* command_ = nullptr;
  std::string truth_, recognition_;
  std::string level_ = "word", mode_ = "text", normalize_ = "none";
  std::string align_ = "corner";
  std::string report_, json_, csv_;
  unsigned threads_ = 0;
  bool graphemes_ = false;
  bool strict_ = false;
};

}  // namespace

std::unique_ptr<Verb> addCompareVerb(CLI::App& app) { return std::make_unique<CompareVerb>(app); }

}  // namespace ormida::cli
