// ExportsTest.cpp - the eight exported functions: return codes, copying in and out,
// exception conversion and the error text.
#include "ormida/ormida.h"

#include "base/QentException.h"
#include "job/JobRegistry.h"
#include "job/OrmidaJob.h"
#include "support/JobApi.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <stdexcept>
#include <vector>

extern "C" int ormidaCApiRoundTrip(void);  // exports_c_test.c, compiled as C

namespace {

using qent::test::Job;
using qent::test::u16;

const OrmidaChar* c(const std::u16string& text) {
  return reinterpret_cast<const OrmidaChar*>(text.c_str());
}

// A handle for a job the test made itself (to reach its internals), known to the exports
// while the handle lives.
class TestHandle {
public:
  explicit TestHandle(qent::job::OrmidaJob& job) : job_(&job) {
    qent::job::JobRegistry::add(job_);
  }
  ~TestHandle() { qent::job::JobRegistry::remove(job_); }
  operator OrmidaJobHandle() const { return reinterpret_cast<OrmidaJobHandle>(job_); }

private:
  qent::job::JobImplementationBase* job_;
};

TEST(ExportsTest, VersionNumberAndTextTruncatedToTheGivenLength) {
  EXPECT_EQ(OrmidaGetVersion(), 0x01070000u);
  const std::pair<size_t, const char*> cases[] = {
      {1, ""}, {19, "Ormida 1.7.0.17098"}, {20, "Ormida 1.7.0.170980"}, {40, "Ormida 1.7.0.170980"}};
  for (const auto& [length, expected] : cases) {
    std::vector<char> buffer(length + 4, 'x');
    ASSERT_EQ(OrmidaGetVersionText(buffer.data(), length), ORMIDA_OK);
    EXPECT_STREQ(buffer.data(), expected);
    EXPECT_EQ(buffer[length], 'x') << "wrote past the length " << length;
  }
}

TEST(ExportsTest, NullArgumentsGiveBadArgument) {
  const std::u16string name = u"WorkSpace";
  size_t size = 10;
  char text[8] = "keep";
  OrmidaJobHandle none = nullptr;
  EXPECT_EQ(OrmidaGetVersionText(text, 0), ORMIDA_BAD_ARGUMENT);
  EXPECT_STREQ(text, "keep");
  EXPECT_EQ(OrmidaGetVersionText(nullptr, 8), ORMIDA_BAD_ARGUMENT);
  EXPECT_EQ(OrmidaJobCreate(nullptr), ORMIDA_BAD_ARGUMENT);
  EXPECT_EQ(OrmidaJobExecute(nullptr), ORMIDA_BAD_ARGUMENT);
  EXPECT_EQ(OrmidaJobFree(&none), ORMIDA_BAD_ARGUMENT);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(OrmidaJobFree(nullptr), ORMIDA_BAD_ARGUMENT);
  EXPECT_EQ(OrmidaJobSetProperty(nullptr, c(name), c(name), 1), ORMIDA_BAD_ARGUMENT);
  EXPECT_EQ(OrmidaJobGetProperty(nullptr, c(name), nullptr, &size), ORMIDA_BAD_ARGUMENT);
  EXPECT_EQ(OrmidaJobGetErrorText(nullptr, nullptr, &size), ORMIDA_BAD_ARGUMENT);

  Job job;
  EXPECT_EQ(OrmidaJobSetProperty(job.handle(), nullptr, c(name), 1), ORMIDA_BAD_ARGUMENT);
  EXPECT_EQ(OrmidaJobSetProperty(job.handle(), c(name), nullptr, 1), ORMIDA_BAD_ARGUMENT);
  EXPECT_EQ(OrmidaJobGetErrorText(job.handle(), nullptr, nullptr), ORMIDA_BAD_ARGUMENT);
  EXPECT_EQ(size, 10u);
}

// Under AddressSanitizer a freed handle proves that the check never reads the memory.
TEST(ExportsTest, HandleThatIsNotAJobIsRefused) {
  alignas(16) unsigned char zeroed[256] = {};
  OrmidaJobHandle freed = nullptr;
  ASSERT_EQ(OrmidaJobCreate(&freed), ORMIDA_OK);
  const OrmidaJobHandle freedCopy = freed;
  ASSERT_EQ(OrmidaJobFree(&freed), ORMIDA_OK);
  const std::u16string name = u"WorkSpace";
  for (OrmidaJobHandle handle : {reinterpret_cast<OrmidaJobHandle>(zeroed), freedCopy,
                                 reinterpret_cast<OrmidaJobHandle>(const_cast<std::u16string*>(&name))}) {
    size_t size = 0;
    EXPECT_EQ(OrmidaJobSetProperty(handle, c(name), c(name), 3), ORMIDA_BAD_ARGUMENT);
    EXPECT_EQ(OrmidaJobGetErrorText(handle, nullptr, &size), ORMIDA_BAD_ARGUMENT);
    EXPECT_EQ(OrmidaJobGetProperty(handle, c(name), nullptr, &size), ORMIDA_BAD_ARGUMENT);
    EXPECT_EQ(OrmidaJobExecute(handle), ORMIDA_BAD_ARGUMENT);
    OrmidaJobHandle again = handle;
    EXPECT_EQ(OrmidaJobFree(&again), ORMIDA_BAD_ARGUMENT);
    EXPECT_EQ(again, handle);
  }
}

TEST(ExportsTest, SetPropertyTakesValueLengthUnitsAndRefusesUnknownNames) {
  qent::job::OrmidaJob job;
  const TestHandle handle(job);
  const std::u16string name = u"WorkSpace";
  const std::u16string value(u"a\0b", 3);
  for (const size_t length : {size_t{0}, size_t{3}, size_t{1}}) {
    ASSERT_EQ(OrmidaJobSetProperty(handle, c(name), c(value), length), ORMIDA_OK);
    EXPECT_EQ(job.properties().plain(788), value.substr(0, length));
  }
  for (const std::u16string bad : {u"compare", u"NoSuchMain.Level", u".Level", u""}) {
    EXPECT_EQ(OrmidaJobSetProperty(handle, c(bad), c(value), 1), ORMIDA_UNKNOWN_PROPERTY)
        << qent::test::u8(bad) << ": names are exact";
  }
  EXPECT_EQ(OrmidaJobSetProperty(handle, c(u"Compare."), c(value), 0), ORMIDA_OK)
      << "an empty sub name is accepted";
}

TEST(ExportsTest, GetPropertyReadsResultsOnlyReportsTheSizeThenCopies) {
  qent::job::OrmidaJob job;
  job.setResult(87, u"{\"errorRate\":0.5}");  // CompareErrorRate
  job.setSubResult(86, 635, u"{\"x\":1}");      // Compare.Result
  const TestHandle handle(job);
  ASSERT_TRUE(job.setProperty(u"WorkSpace", u"/tmp"));
  ASSERT_TRUE(job.setProperty(u"Compare.Level", u"Glyph"));
  const std::pair<std::u16string, uint32_t> cases[] = {
      {u"CompareErrorRate", ORMIDA_BUFFER_TOO_SMALL}, {u"Compare.Result", ORMIDA_BUFFER_TOO_SMALL},
      {u"Compare", ORMIDA_UNKNOWN_PROPERTY},          {u"Compare.Level", ORMIDA_UNKNOWN_PROPERTY},
      {u"WorkSpace", ORMIDA_UNKNOWN_PROPERTY},        {u"NoSuch.Result", ORMIDA_UNKNOWN_PROPERTY},
      {u"Result", ORMIDA_UNKNOWN_PROPERTY},           {u"WordRecognizer.Result", ORMIDA_UNKNOWN_PROPERTY}};
  for (const auto& [name, code] : cases) {
    size_t size = 0;
    EXPECT_EQ(OrmidaJobGetProperty(handle, c(name), nullptr, &size), code) << qent::test::u8(name);
    EXPECT_EQ(size == 0, code == ORMIDA_UNKNOWN_PROPERTY) << "size unchanged when unknown";
  }

  const std::u16string name = u"Compare.Result";
  OrmidaChar buffer[32];
  std::fill(std::begin(buffer), std::end(buffer), OrmidaChar(u'#'));
  size_t size = 7;  // the value's length: no room for the zero
  EXPECT_EQ(OrmidaJobGetProperty(handle, c(name), buffer, &size), ORMIDA_BUFFER_TOO_SMALL);
  EXPECT_EQ(size, 8u);
  EXPECT_EQ(buffer[0], OrmidaChar(u'#')) << "nothing is copied into a small buffer";
  EXPECT_EQ(OrmidaJobGetProperty(handle, c(name), buffer, &size), ORMIDA_OK);
  EXPECT_EQ(size, 8u);
  EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(buffer)), u"{\"x\":1}");
}

// A job whose execute throws what the test hands it, to see each conversion case.
class ThrowingJob : public qent::job::OrmidaJob {
public:
  explicit ThrowingJob(std::function<void()> thrower) : thrower_(std::move(thrower)) {}
  void execute() override { thrower_(); }
  void prepareErrorText() override {
    if (throwInPrepare_) thrower_();
  }
  bool throwInPrepare_ = false;

private:
  std::function<void()> thrower_;
};

TEST(ExportsTest, ExceptionsBecomeCodesAndTextsAtTheBoundary) {
  struct Case {
    std::function<void()> thrower;
    uint32_t code;
    const char* executeText;
    const char* getErrorText;  // when preparing the error text throws
  };
  const Case cases[] = {
      {[] { throw qent::base::QentException(20020, "bad option"); }, 20020,
       "error in OrmidaJobExecute: bad option", "error in getError: bad option"},
      {[] { throw qent::base::QentException(20039, ""); }, 20039,
       "error in OrmidaJobExecute: Unknown exception", "error in getError: Unknown exception"},
      {[] { throw std::runtime_error("disk on fire"); }, 9,
       "error in OrmidaJobExecute: disk on fire", "error in getError: disk on fire"},
      // Standard invalid-argument errors are not runtime errors.
      {[] { throw std::invalid_argument("invalid stoi argument"); }, 9,
       "undefined error in OrmidaJobExecute", "error in getError"},
      {[] { throw 42; }, 9, "undefined error in OrmidaJobExecute", "error in getError"}};
  for (const Case& k : cases) {
    ThrowingJob job(k.thrower);
    const TestHandle handle(job);
    char text[256] = "x";
    size_t size = sizeof text;
    ASSERT_EQ(OrmidaJobGetErrorText(handle, text, &size), ORMIDA_OK);
    EXPECT_STREQ(text, "") << "no text before a failure";
    EXPECT_EQ(OrmidaJobExecute(handle), k.code) << k.executeText;
    ASSERT_EQ(OrmidaJobGetErrorText(handle, nullptr, &size), ORMIDA_OK);
    EXPECT_EQ(size, std::strlen(k.executeText) + 1) << "the size alone";
    size = 1;  // the capacity is deliberately not consulted
    ASSERT_EQ(OrmidaJobGetErrorText(handle, text, &size), ORMIDA_OK);
    EXPECT_STREQ(text, k.executeText);
    job.throwInPrepare_ = true;
    ASSERT_EQ(OrmidaJobGetErrorText(handle, text, &size), ORMIDA_OK);
    EXPECT_STREQ(text, k.getErrorText);
  }
}

// The caller written in C keeps the header valid C.
TEST(ExportsTest, CallerWrittenInCRunsAJob) { EXPECT_EQ(ormidaCApiRoundTrip(), 0); }

}  // namespace
