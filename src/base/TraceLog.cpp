// TraceLog.cpp - the one global logger behind one mutex.
#include "base/TraceLog.h"

#include "base/FileIo.h"
#include "base/Unicode.h"
#include "base/platform/platform.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <mutex>
#include <stdexcept>

namespace qent::base {

namespace {

struct Logger {
  std::ofstream file;
  std::string fileName;
  std::uint32_t threshold = kTraceVerbose;
};

std::mutex& logMutex() {
  static std::mutex mutex;
  return mutex;
}
std::unique_ptr<Logger>& logger() {
  static std::unique_ptr<Logger> instance;
  return instance;
}
std::atomic<std::uint64_t> activeOpenings{0};

void writeLocked(Logger& log, std::string_view message, std::uint32_t level) {
  if (level > log.threshold) return;
  const std::string line = TraceLog::formatLine(message, level);
  log.file.write(line.data(), static_cast<std::streamsize>(line.size()));
  log.file.flush();
}

}  // namespace

std::uint32_t TraceLog::thresholdFromName(std::string_view name, std::uint32_t current) {
  if (name.empty()) return current;
  if (equalsIgnoreAsciiCase(name, "info")) return kTraceInfo;
  if (equalsIgnoreAsciiCase(name, "debug")) return kTraceDebug;
  if (equalsIgnoreAsciiCase(name, "warn")) return kTraceWarning;
  if (equalsIgnoreAsciiCase(name, "error")) return kTraceError;
  if (equalsIgnoreAsciiCase(name, "verbose")) return kTraceVerbose;
  if (name[0] < '0' || name[0] > '9') return current;
  std::uint64_t value = 0;
  for (char c : name) {
    if (c < '0' || c > '9') break;
    value = value * 10 + static_cast<unsigned>(c - '0');
    if (value > kTraceVerbose) return kTraceVerbose;  // also keeps huge numbers from overflowing
  }
  if (value < kTraceError) return kTraceError;
  return static_cast<std::uint32_t>(value);
}

std::string_view TraceLog::tagOf(std::uint32_t level) {
  switch (level) {
    case kTraceFatal: return " [FATAL] ";
    case kTraceError: return " [ERROR] ";
    case kTraceWarning: return " [WARN] ";
    case kTraceInit: return " [INIT] ";
    case kTraceInfo: return " [INFO] ";
    case kTraceDebug: return " [DEBUG] ";
    case kTraceVerbose: return " [INFO] ";  // verbose lines deliberately look like info lines
    default: return "";
  }
}

std::string TraceLog::formatLine(std::string_view message, std::uint32_t level) {
  const platform::LocalTime t = platform::localTimeWithMilliseconds();
  char stamp[64];
  std::snprintf(stamp, sizeof stamp, "%02d.%02d.%04d %02d:%02d:%02d,%03d", t.day, t.month,
                t.year, t.hour, t.minute, t.second, t.millisecond);
  std::string line(stamp);
  line += tagOf(level);
  line += '[';
  line += std::to_string(platform::threadNumber());
  line += "] ";
  line += message;
  line += "\r\n";
  return line;
}

void TraceLog::open(const std::string& fileName, std::string_view levelName) {
  std::lock_guard<std::mutex> lock(logMutex());
  auto& log = logger();
  if (!log) {
    const auto path = platform::pathFromUtf8(fileName);
    std::error_code ec;
    const bool existed = std::filesystem::exists(path, ec);
    auto created = std::make_unique<Logger>();
    created->file.open(path, std::ios::binary | std::ios::app);
    if (!created->file.is_open()) throw std::runtime_error(openErrorText(fileName, errno));
    created->fileName = fileName;
    if (existed) writeLocked(*created, "============== Appending to old log file", kTraceInfo);
    created->threshold = thresholdFromName(levelName, kTraceVerbose);
    log = std::move(created);
  }
  const std::uint64_t count = ++activeOpenings;
  writeLocked(*log, "LOG INIT called and we have now " + std::to_string(count) + " logs active",
              kTraceInfo);
}

void TraceLog::close() {
  std::lock_guard<std::mutex> lock(logMutex());
  auto& log = logger();
  const std::uint64_t count = activeOpenings.load();
  if (count == 0 || !log) return;
  writeLocked(*log, "LOG SHUTDOWN called and we have now " + std::to_string(count) + " logs active",
              kTraceInfo);
  if (--activeOpenings == 0) log.reset();
}

bool TraceLog::isOn() noexcept { return activeOpenings.load() != 0; }

std::uint64_t TraceLog::openCount() noexcept { return activeOpenings.load(); }

void TraceLog::write(std::string_view message, std::uint32_t level) {
  std::lock_guard<std::mutex> lock(logMutex());
  if (auto& log = logger()) writeLocked(*log, message, level);
}

void TraceLog::writeFormatted(std::uint32_t level, const char* format, ...) {
  char buffer[4096];
  va_list args;
  va_start(args, format);
  std::vsnprintf(buffer, sizeof buffer, format, args);
  va_end(args);
  write(buffer, level);
}

}  // namespace qent::base
