// TraceLog.h - the process-wide diagnostic trace shared by all jobs.
//
// Tracing is off until a job opens the log and stays on until every opening has been
// closed again. One mutex serialises opening, closing and writing; the count of openings
// is also kept atomically so that isOn() needs no lock. Each line is written in one piece:
//   "23.11.2026 14:05:09,123 [INFO] [140231...] message\r\n"
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qent::base {

enum TraceLevel : std::uint32_t {
  kTraceFatal = 2,
  kTraceError = 3,
  kTraceWarning = 4,
  kTraceInit = 5,
  kTraceInfo = 6,
  kTraceDebug = 7,
  kTraceVerbose = 8,
};

class TraceLog {
public:
  // Opens the log on fileName when no log is open (appending to an existing file), else
  // only counts one more opening. Throws std::runtime_error when the file cannot be opened.
  static void open(const std::string& fileName, std::string_view levelName);
  // Undoes one opening; the last one closes the file. Does nothing when none is active.
  static void close();
  static bool isOn() noexcept;
  static void write(std::string_view message, std::uint32_t level);
  // printf-style; the message is cut at a few kilobytes.
  static void writeFormatted(std::uint32_t level, const char* format, ...)
#if defined(__GNUC__)
      __attribute__((format(printf, 2, 3)))
#endif
      ;

  // The number of active openings (for tests and the job's bookkeeping).
  static std::uint64_t openCount() noexcept;

  // Threshold from a level name: "info", "debug", "warn", "error", "verbose" (any case),
  // or a number clamped to 3..8; an empty or other name keeps `current`.
  static std::uint32_t thresholdFromName(std::string_view name, std::uint32_t current);
  // The tag written for a level, with its blanks (" [INFO] "), or "" for other levels.
  static std::string_view tagOf(std::uint32_t level);
  // One formatted line, "\r\n" included.
  static std::string formatLine(std::string_view message, std::uint32_t level);
};

}  // namespace qent::base
