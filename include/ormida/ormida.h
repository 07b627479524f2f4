/* ormida.h - the public C interface of the Ormida OCR-result processing library.
 *
 * A caller creates a job, sets named properties on it (UTF-16 names and values),
 * executes it, reads result properties and, after a failure, the error text, and frees
 * the job. Nothing else crosses this interface: no C++ type, no exception.
 *
 *   OrmidaJobHandle job;
 *   OrmidaJobCreate(&job);
 *   OrmidaJobSetProperty(job, u"InputFilename", u"page.json", 9);
 *   if (OrmidaJobExecute(job) != ORMIDA_OK) { ... OrmidaJobGetErrorText ... }
 *   OrmidaJobFree(&job);
 *
 * All strings passed in or out are zero-terminated unless a length is given. Text handed
 * to the memory-output callback and written to files is UTF-8 without a byte-order mark.
 */
#ifndef ORMIDA_ORMIDA_H
#define ORMIDA_ORMIDA_H

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#  if defined(ORMIDA_BUILDING)
#    define ORMIDA_API __declspec(dllexport)
#  elif defined(ORMIDA_STATIC)
#    define ORMIDA_API
#  else
#    define ORMIDA_API __declspec(dllimport)
#  endif
#else
#  define ORMIDA_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

#if defined(_WIN32)
typedef wchar_t OrmidaChar;            /* 16-bit UTF-16 code unit */
#elif defined(__cplusplus)
typedef char16_t OrmidaChar;           /* 16-bit UTF-16 code unit */
#else
typedef uint_least16_t OrmidaChar;     /* the same type as char16_t in C11 */
#endif

/* A job, as the caller sees it. Only the library creates and frees one. */
typedef struct OrmidaJobOpaque* OrmidaJobHandle;

/* Return codes shared by every function. */
#define ORMIDA_OK                0u  /* success */
#define ORMIDA_FAILED            9u  /* failed with an error other than the library's own; error text set */
#define ORMIDA_BAD_ARGUMENT     29u  /* null handle or pointer, a handle that is not a live job (never
                                        created, or already freed), a length of 0 for
                                        OrmidaGetVersionText (a value length of 0 is valid), or a
                                        failure while copying the arguments; error text untouched */
#define ORMIDA_BUFFER_TOO_SMALL 47u  /* buffer too small; the needed size has been written back */
#define ORMIDA_UNKNOWN_PROPERTY 99u  /* property not accepted (set) or not available (get) */

/* The library's own error codes, returned by OrmidaJobExecute with the error text set. */
#define ORMIDA_ERROR_HOCR       20001u /* hOCR or WebAnno TSV input could not be read */
#define ORMIDA_ERROR_OPTION     20020u /* a job option has a bad value, or an operation is unavailable */
#define ORMIDA_ERROR_JSON       20039u /* malformed JSON layout or cloud-OCR input */

/* Creates a job and stores it in *job. Returns 0. If the environment variable
   QENT_TEXTTRACE names a file, the job opens the trace log on it. */
ORMIDA_API uint32_t OrmidaJobCreate(OrmidaJobHandle* job);

/* Destroys *job and sets it to null. Returns 29 when job or *job is null or *job is not a
   live job (a second free of the same handle), else 0. */
ORMIDA_API uint32_t OrmidaJobFree(OrmidaJobHandle* job);

/* Runs the job once with the properties as they stand. Returns 0 on success, 29 for a null
   handle, 9 or one of the library's error codes on failure (read the error text then).
   Results stored before a failure stay readable. */
ORMIDA_API uint32_t OrmidaJobExecute(OrmidaJobHandle job);

/* Sets property `name` (zero-terminated) to exactly `valueLength` code units of `value`
   (zeros allowed; 0 stores an empty value). Dotted names set sub-properties
   ("Compare.Level"). Returns 0, 99 for an unknown name, 29 for a null handle, name or
   value, a handle that is not a job, or a failure while copying. */
ORMIDA_API uint32_t OrmidaJobSetProperty(OrmidaJobHandle job, const OrmidaChar* name,
                                         const OrmidaChar* value, size_t valueLength);

/* Reads result property `name`. On entry *size is the capacity of `buffer` in code units.
   When the property exists, *size becomes its length plus one; if the capacity sufficed
   the value and its zero are copied and 0 is returned, else nothing is copied and 47 is
   returned. An unavailable property returns 99 with *size unchanged. A null handle, name
   or size, or a handle that is not a job, returns 29. Values the caller set are not readable back. */
ORMIDA_API uint32_t OrmidaJobGetProperty(OrmidaJobHandle job, const OrmidaChar* name,
                                         OrmidaChar* buffer, size_t* size);

/* Copies the error text of the last failed execute (UTF-8) into `buffer` and stores its
   length plus one in *size. The capacity passed in *size is NOT consulted: pass a buffer
   large enough, or pass a null buffer first to learn the needed size (nothing is copied
   then). Returns 0, or 29 for a null handle or size or a handle that is not a job. */
ORMIDA_API uint32_t OrmidaJobGetErrorText(OrmidaJobHandle job, char* buffer, size_t* size);

/* Returns the version number 0x01070000 (major in the top byte, minor in the next). */
ORMIDA_API uint32_t OrmidaGetVersion(void);

/* Copies at most `length` bytes of the version text "Ormida 1.7.0.170980" into `buffer`
   and always terminates it at buffer[length - 1]: a short buffer gets a truncated text.
   Returns 29 for a null buffer or a length of 0, else 0. */
ORMIDA_API uint32_t OrmidaGetVersionText(char* buffer, size_t length);

/* The function named by the property MemoryOutputCallback (its address in decimal)
   receives each written output: its bytes, their count, the number set as
   MemoryOutputUserdata (0 when unset) and 0. */
typedef void (*OrmidaMemoryOutput)(const char* bytes, size_t count, uint64_t userdata,
                                   uint32_t reserved);

#ifdef __cplusplus
}
#endif

#endif /* ORMIDA_ORMIDA_H */
