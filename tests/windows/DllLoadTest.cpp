// DllLoadTest.cpp - loads Ormida64.dll at run time, as an application without the import
// library does, and drives a job through all eight exports found with GetProcAddress.
// Windows only; it links neither the library nor its import library.
#include "ormida/ormida.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <type_traits>
#include <vector>

namespace {

static_assert(std::is_same_v<OrmidaChar, wchar_t>, "Windows callers pass wchar_t text");
static_assert(sizeof(OrmidaChar) == 2, "16-bit UTF-16 code units");

std::filesystem::path programFolder() {
  std::vector<wchar_t> buffer(32768);
  const DWORD length = GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
  return std::filesystem::path(std::wstring(buffer.data(), length)).parent_path();
}

std::wstring modulePathOf(HMODULE module) {
  std::vector<wchar_t> buffer(32768);
  const DWORD length = GetModuleFileNameW(module, buffer.data(), static_cast<DWORD>(buffer.size()));
  return std::wstring(buffer.data(), length);
}

// The eight exports, typed from the header's own declarations.
struct Exports {
  decltype(&OrmidaJobCreate) create = nullptr;
  decltype(&OrmidaJobFree) free = nullptr;
  decltype(&OrmidaJobExecute) execute = nullptr;
  decltype(&OrmidaJobSetProperty) setProperty = nullptr;
  decltype(&OrmidaJobGetProperty) getProperty = nullptr;
  decltype(&OrmidaJobGetErrorText) getErrorText = nullptr;
  decltype(&OrmidaGetVersion) version = nullptr;
  decltype(&OrmidaGetVersionText) versionText = nullptr;
};

template <class Fn>
void find(HMODULE module, const char* name, Fn& fn) {
  // GetProcAddress returns FARPROC; the header's type is the one the DLL was built with.
  fn = reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(module, name)));
  EXPECT_NE(fn, nullptr) << name << " is not exported";
}

Exports findExports(HMODULE module) {
  Exports e;
  find(module, "OrmidaJobCreate", e.create);
  find(module, "OrmidaJobFree", e.free);
  find(module, "OrmidaJobExecute", e.execute);
  find(module, "OrmidaJobSetProperty", e.setProperty);
  find(module, "OrmidaJobGetProperty", e.getProperty);
  find(module, "OrmidaJobGetErrorText", e.getErrorText);
  find(module, "OrmidaGetVersion", e.version);
  find(module, "OrmidaGetVersionText", e.versionText);
  return e;
}

void driveAJob(const Exports& e) {
  const uint32_t version = e.version();
  char text[64] = {};
  ASSERT_EQ(e.versionText(text, sizeof text), ORMIDA_OK);
  const std::string expectedStart =
      "Ormida " + std::to_string(version >> 24) + "." + std::to_string((version >> 16) & 0xFF) + ".";
  EXPECT_EQ(std::string(text).rfind(expectedStart, 0), 0u) << text;

  OrmidaJobHandle job = nullptr;
  ASSERT_EQ(e.create(&job), ORMIDA_OK);
  ASSERT_NE(job, nullptr);
  const std::wstring workspace = L"C:\\Temp\\Ärger 日本";
  EXPECT_EQ(e.setProperty(job, L"WorkSpace", workspace.c_str(), workspace.size()), ORMIDA_OK);
  EXPECT_EQ(e.setProperty(job, L"NoSuchProperty", L"x", 1), ORMIDA_UNKNOWN_PROPERTY);

  // Nothing to read: the execution fails, and says so through the error text.
  const uint32_t code = e.execute(job);
  EXPECT_NE(code, ORMIDA_OK);
  size_t size = 0;
  ASSERT_EQ(e.getErrorText(job, nullptr, &size), ORMIDA_OK);
  ASSERT_GT(size, 1u);
  std::vector<char> message(size + 8, 'x');
  size_t copied = 0;
  ASSERT_EQ(e.getErrorText(job, message.data(), &copied), ORMIDA_OK);
  EXPECT_EQ(copied, size);
  EXPECT_EQ(std::strlen(message.data()), size - 1);

  wchar_t buffer[16];
  size_t capacity = 16;
  EXPECT_EQ(e.getProperty(job, L"Compare.Result", buffer, &capacity), ORMIDA_UNKNOWN_PROPERTY);
  EXPECT_EQ(capacity, 16u);

  EXPECT_EQ(e.free(&job), ORMIDA_OK);
  EXPECT_EQ(job, nullptr);
  EXPECT_EQ(e.free(&job), ORMIDA_BAD_ARGUMENT);
}

TEST(DllLoadTest, LoadsBesideTheProgramAndRunsAJob) {
  const std::filesystem::path dll = programFolder() / L"Ormida64.dll";
  HMODULE module = LoadLibraryW(dll.c_str());
  ASSERT_NE(module, nullptr) << "LoadLibraryW failed with " << GetLastError();
  const Exports e = findExports(module);
  EXPECT_EQ(GetProcAddress(module, "OrmidaJobCreateEx"), nullptr);
  if (!HasFailure()) driveAJob(e);
  EXPECT_TRUE(FreeLibrary(module));
}

// An application installed in a folder with a non-ASCII name loads the library by its
// wide path, and the library knows where it was loaded from.
TEST(DllLoadTest, LoadsFromAFolderWithANonAsciiName) {
  std::error_code ec;
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() /
      (L"ormida Bibliothek Größe 日本 " + std::to_wstring(GetCurrentProcessId()));
  std::filesystem::create_directories(folder);
  const std::filesystem::path dll = folder / L"Ormida64.dll";
  std::filesystem::copy_file(programFolder() / L"Ormida64.dll", dll,
                             std::filesystem::copy_options::overwrite_existing);
  HMODULE module = LoadLibraryW(dll.c_str());
  ASSERT_NE(module, nullptr) << "LoadLibraryW failed with " << GetLastError();
  EXPECT_TRUE(std::filesystem::equivalent(modulePathOf(module), dll));
  const Exports e = findExports(module);
  if (!HasFailure()) driveAJob(e);
  EXPECT_TRUE(FreeLibrary(module));
  std::filesystem::remove_all(folder, ec);
}

}  // namespace
