// SummarizeVerb.cpp - `ormida summarize A.json B.json ...`: partial corpus summaries (from
// several machines or runs) merged into one, from their counts.
#include "CorpusSummary.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>

#include <fstream>
#include <iostream>
#include <iterator>

namespace ormida::cli {

namespace {

class SummarizeVerb : public Verb {
public:
  explicit SummarizeVerb(CLI::App& app) {
    command_ = app.add_subcommand(
        "summarize", "merge the summary JSON files of `ormida compare` over parts of a corpus");
    command_->add_option("SUMMARY", inputs_, "summary JSON files")->required();
    command_->add_option("--json", json_, "write the merged summary JSON to this file");
    command_->add_option("--csv", csv_, "write the merged summary CSV to this file");
  }

  bool chosen() const override { return command_->parsed(); }

  int run() override {
    CorpusSummary whole;
    for (std::size_t i = 0; i < inputs_.size(); ++i) {
      std::ifstream in(inputs_[i], std::ios::binary);
      if (!in) {
        std::cerr << "ormida summarize: cannot read " << inputs_[i] << "\n";
        return kExitFailed;
      }
      const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
      try {
        CorpusSummary part = summaryFromJson(text);
        if (i == 0) {
          whole = std::move(part);
        } else {
          mergeSummary(whole, part);
        }
      } catch (const std::exception& e) {
        std::cerr << "ormida summarize: " << inputs_[i] << ": " << e.what() << "\n";
        return kExitFailed;
      }
    }
    std::cout << totalsText(whole);
    for (const auto& [path, text] :
         {std::pair{json_, &summaryToJson}, std::pair{csv_, &summaryToCsv}}) {
      if (!path.empty() && !writeFileAtomically(path, text(whole))) {
        std::cerr << "ormida summarize: cannot write " << path << "\n";
        return kExitFailed;
      }
    }
    return kExitOk;
  }

private:
  CLI::App* command_ = nullptr;
  std::vector<std::string> inputs_;
  std::string json_, csv_;
};

}  // namespace

std::unique_ptr<Verb> addSummarizeVerb(CLI::App& app) {
  return std::make_unique<SummarizeVerb>(app);
}

}  // namespace ormida::cli
