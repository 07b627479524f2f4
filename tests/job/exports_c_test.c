/* exports_c_test.c - the public header used from C, as a C caller would. */
#include "ormida/ormida.h"

#include <string.h>

int ormidaCApiRoundTrip(void);

/* Returns 0 when every step behaves as documented, else the number of the failed step. */
int ormidaCApiRoundTrip(void) {
  static const OrmidaChar name[] = {'W', 'o', 'r', 'k', 'S', 'p', 'a', 'c', 'e', 0};
  static const OrmidaChar value[] = {'/', 't', 'm', 'p'};
  static const OrmidaChar result[] = {'C', 'o', 'm', 'p', 'a', 'r', 'e', '.', 'R', 'e', 's',
                                      'u', 'l', 't', 0};
  OrmidaJobHandle job = 0;
  char text[128];
  size_t size = sizeof text;
  OrmidaChar buffer[16];
  size_t capacity = 16;

  if (OrmidaJobCreate(&job) != ORMIDA_OK || job == 0) return 1;
  if (OrmidaJobSetProperty(job, name, value, 4) != ORMIDA_OK) return 2;
  if (OrmidaJobExecute(job) != ORMIDA_FAILED) return 3;
  if (OrmidaJobGetErrorText(job, text, &size) != ORMIDA_OK) return 4;
  if (strcmp(text, "error in OrmidaJobExecute: No Main document loaded") != 0) return 5;
  if (OrmidaJobGetProperty(job, result, buffer, &capacity) != ORMIDA_UNKNOWN_PROPERTY) return 6;
  if (OrmidaJobFree(&job) != ORMIDA_OK || job != 0) return 7;
  return 0;
}
