// CheckVerb.cpp - `ormida check TEXT|LAYOUT`: the word recognizer's report on a text or a
// layout, or on every file of a folder (one report file each).
#include "Batch.h"
#include "Progress.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>

#include <atomic>
#include <filesystem>
#include <iostream>

namespace ormida::cli {

namespace {

namespace fs = std::filesystem;

class CheckVerb : public Verb {
public:
  explicit CheckVerb(CLI::App& app) {
    command_ = app.add_subcommand(
        "check", "judge text quality with dictionaries: the word recognizer's report");
    command_->add_option("INPUT", input_, "text or layout file, or a folder of them")->required();
    command_->add_option("--lang", language_, "language of the text")
        ->check(CLI::IsMember({"deu", "eng"}))
        ->default_str("deu");
    command_->add_option("--dictionaries", dictionaries_,
                         "folder of the Hunspell dictionaries (default: the shipped ones)");
    command_->add_option("--format", format_, "report format")
        ->check(CLI::IsMember({"text", "csv", "json"}))
        ->default_str("text");
    command_->add_option("--out", out_, "for a folder: where the reports go (NAME.check.txt|csv|json)");
    command_->add_option("-j,--jobs", threads_, "for folders: files checked at once")
        ->default_str("the number of cores")
        ->check(CLI::Range(1, 1024));
    command_->add_flag("--strict", strict_,
                       "read hOCR strictly (default: tolerant, as engines write it)");
  }

  bool chosen() const override { return command_->parsed(); }

  int run() override {
    if (fs::is_directory(utf8Path(input_))) return runFolder();
    if (const std::string why = unusableInputName(input_); !why.empty()) {
      std::cerr << "ormida check: " << input_ << ": " << why << "\n";
      return kExitUsage;
    }
    const JobOutcome outcome = runJob(jobProperties(input_, ""), "WordRecognizer.Result", true);
    if (!outcome.ok) {
      std::cerr << "ormida check: " << outcome.error << "\n";
      return kExitFailed;
    }
    std::cout << outcome.result;
    if (!outcome.result.empty() && outcome.result.back() != '\n') std::cout << "\n";
    return kExitOk;
  }

private:
  Properties jobProperties(const std::string& input, const std::string& reportFile) const {
    Properties properties = {{"InputFilename", input},
                             {"WordRecognizer", "true"},
                             {"WordRecognizer.Options", "Language=" + language_},
                             {"WordRecognizer.StatisticsOutputFormat", format_}};
    if (!dictionaries_.empty()) {
      properties.emplace_back("WordRecognizer.DictionaryWorkSpace", dictionaries_);
    }
    if (!reportFile.empty()) properties.emplace_back("WordRecognizer.StatisticsFilename", reportFile);
    if (!strict_) properties.emplace_back("TolerantHocr", "true");
    return properties;
  }

  int runFolder() {
    if (out_.empty()) {
      std::cerr << "ormida check: checking a folder needs --out FOLDER for the reports\n";
      return kExitUsage;
    }
    std::error_code failed;
    fs::create_directories(utf8Path(out_), failed);
    if (failed || !fs::is_directory(utf8Path(out_))) {
      std::cerr << "ormida check: cannot create the folder " << out_ << "\n";
      return kExitFailed;
    }
    const std::string extension = format_ == "text" ? ".txt" : "." + format_;
    const std::vector<fs::path> files = filesOf(utf8Path(input_));
    std::atomic<std::size_t> failures{0};
    Progress progress(files.size(), standardErrorIsTerminal(), std::cerr);
    runOnThreads(files.size(), threads_ != 0 ? threads_ : defaultThreads(), [&](std::size_t i) {
      std::string error = unusableInputName(utf8Name(files[i]));
      try {
        if (error.empty()) {
          const fs::path report = utf8Path(out_) / (stemOf(files[i]) + ".check" + extension);
          const JobOutcome outcome = runJob(jobProperties(utf8Name(files[i]), utf8Name(report)), "");
          if (outcome.ok) return;
          error = outcome.error;
        }
      } catch (const std::exception& e) {
        error = e.what();
      }
      ++failures;
      progress.note("ormida: " + utf8Name(files[i]) + " failed: " + error);
    }, progress);
    std::cout << files.size() - failures << " of " << files.size() << " files checked; reports in "
              << out_ << "\n";
    return failures == 0 ? kExitOk : kExitFailed;
  }

  CLI::App* command_ = nullptr;
  std::string input_, language_ = "deu", dictionaries_, format_ = "text", out_;
  unsigned threads_ = 0;
  bool strict_ = false;
};

}  // namespace

std::unique_ptr<Verb> addCheckVerb(CLI::App& app) { return std::make_unique<CheckVerb>(app); }

}  // namespace ormida::cli
