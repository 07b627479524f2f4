// FileIo.h - whole-file reading and atomic writing, with the library's file-error texts.
//
// Every failure is a std::runtime_error whose text starts with one of the fixed pieces
// ("reading error (errno ", "writing error (errno ", "not open: ", "stat failed for file ",
// "an error occurred during renaming the file from ", "exception during renaming ") and
// names the file, so a caller can tell what went wrong where.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace qent::base {

std::string openErrorText(const std::string& fileName, int errorNumber);

// Reads the whole file. A directory, a missing or unreadable file is an error.
std::string readFile(const std::filesystem::path& path);

// Writes data to a temporary file beside path, then renames it over path: a reader never
// sees a half-written file and a failure leaves an earlier file untouched.
void writeFileAtomic(const std::filesystem::path& path, std::string_view data);

// Resolves a relative path against a base directory (the job's WorkSpace); an absolute
// path or an empty base leaves the path as it is.
std::filesystem::path resolveAgainst(const std::filesystem::path& base,
                                     const std::filesystem::path& path);

}  // namespace qent::base
