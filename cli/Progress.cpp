// Progress.cpp - the progress bar and its plain-line fallback.
#include "Progress.h"

#include <cstdio>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace ormida::cli {

namespace {

std::string clock(double seconds) {
  const long total = static_cast<long>(seconds + 0.5);
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%ld:%02ld:%02ld", total / 3600, total / 60 % 60,
                total % 60);
  return buffer;
}

}  // namespace

bool standardErrorIsTerminal() {
#if defined(_WIN32)
  return _isatty(_fileno(stderr)) != 0;
#else
  return isatty(fileno(stderr)) != 0;
#endif
}

Progress::Progress(std::size_t total, bool terminal, std::ostream& out)
    : total_(total), terminal_(terminal), out_(out) {}

void Progress::advance() {
  const std::lock_guard<std::mutex> lock(mutex_);
  ++done_;
  if (terminal_) {
    // Redrawing costs more than a small document: at most ten times a second.
    const auto now = std::chrono::steady_clock::now();
    if (done_ == total_ || now - lastDraw_ >= std::chrono::milliseconds(100)) {
      lastDraw_ = now;
      draw();
    }
    return;
  }
  const std::size_t tenth = total_ == 0 ? 10 : done_ * 10 / total_;
  if (tenth != lastTenth_) {
    lastTenth_ = tenth;
    out_ << "ormida: " << done_ << " of " << total_ << " done\n" << std::flush;
  }
}

void Progress::note(const std::string& line) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (terminal_) out_ << "\r\033[K";
  out_ << line << "\n";
  if (terminal_) draw();
  out_ << std::flush;
}

void Progress::finish() {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (terminal_) out_ << "\n" << std::flush;
}

void Progress::draw() {
  constexpr std::size_t kWidth = 30;
  const std::size_t filled = total_ == 0 ? kWidth : done_ * kWidth / total_;
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  const double rate = seconds > 0 ? static_cast<double>(done_) / seconds : 0.0;
  const double left = rate > 0 ? static_cast<double>(total_ - done_) / rate : 0.0;
  char figures[96];
  std::snprintf(figures, sizeof figures, "] %zu/%zu  %.1f/s  %s left", done_, total_, rate,
                clock(left).c_str());
  out_ << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << figures
       << std::flush;
}

}  // namespace ormida::cli
