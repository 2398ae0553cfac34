/* ZenfoFR130: find and replace in many files. The interface for hosts.
 *
 * Conventions
 *  1. One thread calls, one call at a time. Initialize() comes first.
 *  2. On Windows the library exports ordinals only (zenfofr130 import library
 *     or GetProcAddress with the ordinal); functions and callbacks remove
 *     their own arguments (stdcall). On Linux operations are exported by name.
 *  3. Integers are 32 bits wide. Texts are narrow, zero-terminated byte
 *     strings; the library copies what it keeps. Text buffers are the host's:
 *     where a size "is not consulted" the buffer must be large enough.
 *  4. Lists are named by number (ZENFO_LIST_...), records by a position that
 *     counts from 0 in the list's present order. A sort, a removal or an
 *     appended record changes positions.
 *  5. A failure answers -1 unless stated, and never throws. Failures that are
 *     logged go to the error file (SetErrorFile). A fault inside an operation
 *     is logged as "Runtime error".
 *  6. A callback may call the operations that only read, SetState, the save
 *     and the display operations. Every operation that adds, removes or
 *     reorders records, compiles a pattern or runs a search answers its
 *     failure value, unlogged, while another operation is running.
 */
#ifndef ZENFOFR130_H_
#define ZENFOFR130_H_

#include <stdint.h>

#ifdef _WIN32
#include <wchar.h>
#define ZENFO_CALL __stdcall
typedef wchar_t ZenfoWideChar;
#else
#define ZENFO_CALL
#ifdef __cplusplus
typedef char16_t ZenfoWideChar;
#else
typedef uint_least16_t ZenfoWideChar;
#endif
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Lists, by number. */
enum {
  ZENFO_LIST_FILES_1 = 0,     /* first file list */
  ZENFO_LIST_FILES = 1,       /* second file list: runs work through it */
  ZENFO_LIST_PAIRS = 2,       /* find and replace strings */
  ZENFO_LIST_UNDO = 3,        /* safe copies of the last run */
  ZENFO_LIST_RESULT = 4,      /* files with matches */
  ZENFO_LIST_MATCHES = 5,     /* matches of the find pattern */
  ZENFO_LIST_NO_MATCH = 6,    /* files without matches */
  ZENFO_LIST_ERROR = 7,       /* files that could not be searched */
  ZENFO_LIST_VALUES = 8,      /* replace values */
  ZENFO_LIST_EXCLUDED = 9,    /* matches of the exclusion pattern */
  ZENFO_LIST_REPLACE_MATCHES = 10 /* matches of the replace pattern */
};

/* Progress of the running operation; valid during the callback only. */
typedef struct ProgressRecord {
  uint32_t total;    /* steps of the operation; 0 in a reset record */
  uint32_t position; /* steps done */
  int32_t percent;   /* 0 to 100 */
} ProgressRecord;

typedef int32_t(ZENFO_CALL* ZenfoReportCallback)(ProgressRecord* progress);
typedef int32_t(ZENFO_CALL* ZenfoInterruptCallback)(void);
typedef int32_t(ZENFO_CALL* ZenfoTextCallback)(const ZenfoWideChar* text);
typedef int32_t(ZENFO_CALL* ZenfoOptionCallback)(const ZenfoWideChar* text,
                                                 int32_t number);

/* The host's callbacks; a null one is never called. Wide texts live in one
 * shared buffer of 1024 characters that the next callback overwrites. */
typedef struct CallbackTable {
  void* unused;                     /* stored, never called */
  ZenfoReportCallback report;       /* progress; the answer is ignored */
  ZenfoInterruptCallback interrupt; /* non-zero asks to stop */
  ZenfoTextCallback status;         /* status text; the answer is ignored */
  ZenfoTextCallback file_question;  /* AddFileToList: 0 skip, 1 add, 2 skip
                                       this and all later, 3 add all */
  ZenfoOptionCallback option_question; /* runs: 0 skip, 1 take, 2 stop,
                                          3 take this and all later */
} CallbackTable;

/* File information options: ten bytes; a non-zero byte asks for a fact. */
enum {
  ZENFO_OPTION_ICON = 1,
  ZENFO_OPTION_FILE_NAME = 2,
  ZENFO_OPTION_FOLDER = 3,
  ZENFO_OPTION_TYPE = 4,
  ZENFO_OPTION_ATTRIBUTES = 5, /* bytes 5 to 9 alike: attributes, size, times */
  ZENFO_OPTION_COUNT = 10
};

#ifdef __cplusplus
}
#endif

#endif /* ZENFOFR130_H_ */
