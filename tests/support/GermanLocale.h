// GermanLocale.h - switches the process's C locale to German (decimal comma) for a scope,
// as an application that called setlocale(LC_ALL, "") in Germany runs.
#pragma once

#include <clocale>
#include <string>

namespace qent::test {

class ScopedGermanLocale {
public:
  // glibc names the locale "de_DE.UTF-8"; the Windows C runtime knows "de_DE" and
  // "German_Germany.1252" but no UTF-8 variant.
  ScopedGermanLocale() : previous_(std::setlocale(LC_ALL, nullptr)) {
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "German_Germany.1252"}) {
      if (std::setlocale(LC_ALL, name) != nullptr) {
        active_ = true;
        return;
      }
    }
  }
  ~ScopedGermanLocale() { std::setlocale(LC_ALL, previous_.c_str()); }
  ScopedGermanLocale(const ScopedGermanLocale&) = delete;
  ScopedGermanLocale& operator=(const ScopedGermanLocale&) = delete;

  // False when no German locale is installed (tools/install-deps generates one).
  bool active() const { return active_; }

private:
  std::string previous_;
  bool active_ = false;
};

}  // namespace qent::test
