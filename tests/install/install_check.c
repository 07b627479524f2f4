/* install_check.c - a caller built against an installed Ormida, as a user would build it:
 * converts the hOCR page named on the command line to plain text through the memory
 * callback and checks the text. */
#include <ormida/ormida.h>
#include <stdio.h>
#include <string.h>

static char text[256];
static size_t length;

static void collect(const char* bytes, size_t count, uint64_t userdata, uint32_t reserved) {
  (void)userdata;
  (void)reserved;
  if (length + count >= sizeof text) count = sizeof text - 1 - length;
  memcpy(text + length, bytes, count);
  length += count;
}

/* Sets a property; names and values here are ASCII, so widening each byte gives UTF-16. */
static int set(OrmidaJobHandle job, const char* name, const char* value) {
  OrmidaChar wideName[64] = {0}, wideValue[1024];
  size_t i;
  for (i = 0; name[i] != 0 && i < 63; ++i) wideName[i] = (OrmidaChar)name[i];
  for (i = 0; value[i] != 0 && i < 1024; ++i) {
    if ((unsigned char)value[i] > 127) return 1;
    wideValue[i] = (OrmidaChar)value[i];
  }
  return OrmidaJobSetProperty(job, wideName, wideValue, i) != ORMIDA_OK;
}

int main(int argc, char** argv) {
  const char* expected = "Installed library\n";
  OrmidaJobHandle job = NULL;
  char callback[32], error[1024];
  size_t size = 0;
  uint32_t code;
  if (argc != 2) {
    fprintf(stderr, "usage: install_check PAGE.hocr\n");
    return 2;
  }
  if (OrmidaGetVersion() == 0 || OrmidaJobCreate(&job) != ORMIDA_OK) return 1;
  snprintf(callback, sizeof callback, "%llu", (unsigned long long)(uintptr_t)&collect);
  if (set(job, "InputFilename", argv[1]) || set(job, "OutputFilename.Format", "txtutf8") ||
      set(job, "MemoryOutputCallback", callback)) {
    fprintf(stderr, "install_check: a property was refused\n");
    return 1;
  }
  code = OrmidaJobExecute(job);
  if (code != ORMIDA_OK) {
    OrmidaJobGetErrorText(job, NULL, &size); /* the size first: the capacity is not checked */
    if (size <= sizeof error) OrmidaJobGetErrorText(job, error, &size);
    fprintf(stderr, "install_check: failed (%u): %s\n", code, size <= sizeof error ? error : "?");
  }
  if (OrmidaJobFree(&job) != ORMIDA_OK || code != ORMIDA_OK) return 1;
  if (strcmp(text, expected) != 0) {
    fprintf(stderr, "install_check: got \"%s\", expected \"%s\"\n", text, expected);
    return 1;
  }
  printf("install_check: ok\n");
  return 0;
}
