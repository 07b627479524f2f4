// Progress.h - how far a batch has come, on standard error: a bar with rate and time left
// redrawn in place on a terminal, plain lines at every tenth otherwise (logs and pipes get
// no carriage returns). Thread-safe; notes (failures) go out as lines of their own.
#pragma once

#include <chrono>
#include <cstddef>
#include <mutex>
#include <ostream>
#include <string>

namespace ormida::cli {

class Progress {
public:
  Progress(std::size_t total, bool terminal, std::ostream& out);
  // One item finished.
  void advance();
  void note(const std::string& line);
  // Ends the bar's line on a terminal.
  void finish();

private:
  void draw();

  std::size_t total_;
  std::size_t done_ = 0;
  std::size_t lastTenth_ = 0;
  bool terminal_;
  std::ostream& out_;
  std::mutex mutex_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::chrono::steady_clock::time_point lastDraw_{};
};

// Whether standard error is a terminal.
bool standardErrorIsTerminal();

}  // namespace ormida::cli
