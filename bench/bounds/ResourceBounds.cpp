// ResourceBounds.cpp - ormida_bounds: runs one oversized input through a job, on a thread with
// a 128 KB stack, and checks that it either succeeds within its memory bound or fails with a
// clear error. Each case is a process of its own, so its peak memory is its own:
//   ormida_bounds CASE     (huge-file, many-words, million-words, long-line, long-word,
//                           deep-json, deep-hocr, deep-cloud-ocr; "list" prints them)
// Prints one line: case, return code, seconds, peak resident megabytes, the error text.
// Exits 1 when the job crashed into an unclear error or the peak passed the case's bound.
#include "ormida/ormida.h"

#include "base/Unicode.h"

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kStack = 128 * 1024;

struct Outcome {
  uint32_t code = 0;
  std::string error;
  std::size_t outputBytes = 0;
};

void count(const char*, size_t bytes, uint64_t userdata, uint32_t) {
  *reinterpret_cast<std::size_t*>(static_cast<uintptr_t>(userdata)) += bytes;
}

uint32_t set(OrmidaJobHandle job, const char* name, const std::string& value) {
  const std::u16string n = qent::base::utf8ToUtf16(name), v = qent::base::utf8ToUtf16(value);
  return OrmidaJobSetProperty(job, reinterpret_cast<const OrmidaChar*>(n.c_str()),
                              reinterpret_cast<const OrmidaChar*>(v.c_str()), v.size());
}

std::string addressOf(const std::string& bytes) {
  return std::to_string(reinterpret_cast<uintptr_t>(bytes.data())) + ":" +
         std::to_string(bytes.size());
}

// One job over `properties`, its layout written as JSON and plain text to memory.
Outcome run(const std::vector<std::pair<const char*, std::string>>& properties) {
  Outcome outcome;
  OrmidaJobHandle job = nullptr;
  OrmidaJobCreate(&job);
  for (const auto& [name, value] : properties) set(job, name, value);
  set(job, "MemoryOutputCallback", std::to_string(reinterpret_cast<uintptr_t>(&count)));
  set(job, "MemoryOutputUserdata",
      std::to_string(reinterpret_cast<uintptr_t>(&outcome.outputBytes)));
  outcome.code = OrmidaJobExecute(job);
  if (outcome.code != ORMIDA_OK) {
    std::size_t size = 0;
    OrmidaJobGetErrorText(job, nullptr, &size);
    outcome.error.resize(size);
    OrmidaJobGetErrorText(job, outcome.error.data(), &size);
    outcome.error.resize(size > 0 ? size - 1 : 0);
  }
  OrmidaJobFree(&job);
  return outcome;
}

std::string repeat(std::size_t times, const std::string& piece) {
  std::string out;
  out.reserve(times * piece.size());
  for (std::size_t i = 0; i < times; ++i) out += piece;
  return out;
}

std::string words(std::size_t count, std::size_t perLine) {
  // WebAnno TSV is the leanest layout text: about 20 bytes a word.
  std::string tsv = "#FORMAT=WebAnno TSV 3.2\n#T_SP=webanno.custom.Mention|value\n\n\n";
  std::size_t offset = 0;
  for (std::size_t line = 0; line * perLine < count; ++line) {
    tsv += "#Text=";
    tsv += repeat(std::min(perLine, count - line * perLine), "w ");
    tsv += "\n";
    for (std::size_t w = 1; w <= perLine && line * perLine + w <= count; ++w, offset += 2) {
      tsv += std::to_string(line + 1) + "-" + std::to_string(w) + "\t" + std::to_string(offset) +
             "-" + std::to_string(offset + 1) + "\tw\t_\t\n";
    }
    tsv += "\n";
    ++offset;
  }
  return tsv;
}

std::string jsonLayout(const std::string& wordText, std::size_t count) {
  std::string children;
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) children += ",";
    children += R"({"type":"word","left":)";
    children += std::to_string(i % 100000);
    children += R"(,"top":1,"width":5,"height":9,"text":")";
    children += wordText;
    children += "\"}";
  }
  return R"({"root":{"type":"node","children":[{"type":"page","width":100000,"height":100,)"
         R"("children":[{"type":"line","left":0,"top":1,"width":100000,"height":9,"children":[)" +
         children + "]}]}]}}";
}

struct Case {
  const char* name;
  std::size_t boundMegabytes;  // peak resident memory allowed
  std::function<Outcome()> run;
};

std::vector<Case> cases() {
  return {
      {"huge-file", 64,
       [] {
         // A sparse 1 GB file: refused by its size before a byte is read.
         const auto file = std::filesystem::temp_directory_path() / ("ormida-bounds-1g-" + std::to_string(getpid()) + ".json");
         std::filesystem::remove(file);
         { std::FILE* f = std::fopen(file.string().c_str(), "wb"); if (f) std::fclose(f); }
         std::filesystem::resize_file(file, std::uintmax_t{1} << 30);
         Outcome outcome = run({{"InputFilename", file.string()}, {"OutputFilename.Format", "json"}});
         std::filesystem::remove(file);
         return outcome;
       }},
      {"many-words", 1024,
       [] {
         const std::string tsv = words(10'000'000, 1000);
         return run({{"InputMemoryAddress", addressOf(tsv)}, {"OutputFilename.Format", "txtutf8"}});
       }},
      {"million-words", 512,
       [] {
         // What a layout costs a word, for the largest ones the size limit lets through.
         const std::string tsv = words(1'000'000, 1000);
         return run({{"InputMemoryAddress", addressOf(tsv)}, {"OutputFilename.Format", "json"}});
       }},
      {"long-line", 512,
       [] {
         const std::string tsv = words(1'000'000, 1'000'000);  // one 2 MB sentence, 1M rows
         const std::string json = jsonLayout("line", 150'000);  // one 10 MB line of JSON
         Outcome first = run({{"InputMemoryAddress", addressOf(json)}, {"OutputFilename.Format", "json;hocr"}});
         if (first.code != ORMIDA_OK) return first;
         return run({{"InputMemoryAddress", addressOf(tsv)}, {"OutputFilename.Format", "webanno"}});
       }},
      {"long-word", 64,
       [] {
         std::string text(1'000'000, 'a');
         const std::string left = jsonLayout(text, 1);
         text[500'000] = 'b';
         const std::string right = jsonLayout(text, 1);
         const auto file = std::filesystem::temp_directory_path() / ("ormida-bounds-word-" + std::to_string(getpid()) + ".json");
         { std::FILE* f = std::fopen(file.string().c_str(), "wb"); std::fwrite(right.data(), 1, right.size(), f); std::fclose(f); }
         Outcome outcome = run({{"InputMemoryAddress", addressOf(left)}, {"Compare", "true"},
                                {"Compare.With", file.string()}, {"Compare.Level", "word"},
                                {"OutputFilename.Format", "json;hocr;webanno"}});
         std::filesystem::remove(file);
         return outcome;
       }},
      {"deep-json", 64,
       [] {
         std::string json = "{\"root\":";
         json += repeat(100'000, R"({"type":"node","children":[)");
         json += repeat(100'000, "]}") + "}";
         return run({{"InputMemoryAddress", addressOf(json)}, {"OutputFilename.Format", "json"}});
       }},
      {"deep-hocr", 256,
       [] {
         std::string hocr = "<html><body>";
         hocr += repeat(100'000, "<div class='ocr_carea' title='bbox 0 0 9 9'>");
         hocr += repeat(100'000, "</div>") + "</body></html>";
         Outcome strict = run({{"InputMemoryAddress", addressOf(hocr)}, {"OutputFilename.Format", "json"}});
         if (strict.code != ORMIDA_OK && strict.error.empty()) return strict;  // unclear
         return run({{"InputMemoryAddress", addressOf(hocr)}, {"TolerantHocr", "true"},
                     {"OutputFilename.Format", "json"}});
       }},
      {"deep-cloud-ocr", 64,
       [] {
         std::string json = R"({"responses":[{"fullTextAnnotation":{"pages":)";
         json += repeat(100'000, "[") + repeat(100'000, "]") + "}}]}";
         return run({{"InputMemoryAddress", addressOf(json)}, {"OutputFilename.Format", "json"}});
       }},
  };
}

void* start(void* task) {
  (*static_cast<std::function<void()>*>(task))();
  return nullptr;
}

// The library must not need more than a caller's small thread offers.
void onSmallStack(std::function<void()> task) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, kStack);
  pthread_t thread;
  if (pthread_create(&thread, &attributes, start, &task) != 0) {
    std::perror("pthread_create");
    std::exit(2);
  }
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<Case> all = cases();
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s CASE|list\n", argv[0]);
    return 2;
  }
  for (const Case& c : all) {
    if (std::strcmp(argv[1], "list") == 0) std::printf("%s\n", c.name);
    if (std::strcmp(argv[1], c.name) != 0) continue;
    Outcome outcome;
    const auto begin = std::chrono::steady_clock::now();
    onSmallStack([&] { outcome = c.run(); });
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const std::size_t peak = static_cast<std::size_t>(usage.ru_maxrss) / 1024;
    // A clear error names what is wrong; the catch-all text of the boundary does not.
    const bool clear = outcome.code == ORMIDA_OK ||
                       (!outcome.error.empty() && outcome.error.find("undefined") == std::string::npos &&
                        outcome.error.find("bad_alloc") == std::string::npos);
    std::printf("%-15s code %5u %8.1f s %6zu MB (bound %zu) %zu output bytes  %s\n", c.name,
                outcome.code, seconds, peak, c.boundMegabytes, outcome.outputBytes,
                outcome.error.substr(0, 160).c_str());
    return clear && peak <= c.boundMegabytes ? 0 : 1;
  }
  if (std::strcmp(argv[1], "list") == 0) return 0;
  std::fprintf(stderr, "no case %s\n", argv[1]);
  return 2;
}
