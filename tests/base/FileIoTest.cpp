// FileIoTest.cpp - whole-file reading and atomic writing with their error texts.
#include "base/FileIo.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

namespace {

using namespace qent::base;
using qent::test::readAll;
using qent::test::TempDir;

std::string errorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const std::runtime_error& e) {
    return e.what();
  }
  return "<no error>";
}

TEST(FileIoTest, ReadsWholeFilesIncludingZerosAndEmptyFiles) {
  TempDir dir;
  const std::string bytes("a\0b\r\n\xFF", 6);
  EXPECT_EQ(readFile(dir.write("bin", bytes)), bytes);
  EXPECT_EQ(readFile(dir.write("empty", "")), "");
  const std::string big(300000, 'x');
  EXPECT_EQ(readFile(dir.write("big", big)).size(), big.size());
}

TEST(FileIoTest, FailedWriteKeepsTheEarlierFile) {
  TempDir dir;
  const auto target = dir / "out.json";
  writeFileAtomic(target, "earlier");
  // A directory in the way of the rename: the write fails and the file stays as it was.
  const auto blocked = dir / "blocked";
  std::filesystem::create_directories(blocked / "inner");
  const std::string message = errorOf([&] { writeFileAtomic(blocked, "new"); });
  EXPECT_EQ(message.rfind("an error occurred during renaming the file from ", 0), 0u) << message;
  EXPECT_TRUE(std::filesystem::is_directory(blocked / "inner"));
  const auto entries = std::distance(std::filesystem::directory_iterator(dir.path()),
                                     std::filesystem::directory_iterator());
  EXPECT_EQ(entries, 2) << "the temporary file of the failed write is gone";
  const std::string noDir = errorOf([&] { writeFileAtomic(dir / "no" / "dir" / "x", "y"); });
  EXPECT_EQ(noDir.rfind("file is busy or not exist or its path is too long (errno: ", 0), 0u)
      << noDir;
  EXPECT_EQ(readAll(target), "earlier");
}

}  // namespace
