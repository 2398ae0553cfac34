/* ZenfoFR130: find and replace in many files. The interface for hosts.
 *
 * Conventions
 *  1. One call at a time, all from one thread. While the calling thread waits
 *     in a callback, another thread may make the calls that callbacks may make
 *     (6), and gets the callbacks of these calls. Initialize() comes first.
 *  2. On Windows the library exports ordinals only (zenfofr130 import library
 *     or GetProcAddress with the ordinal); functions and callbacks remove
 *     their own arguments (stdcall). On Linux operations are exported by name.
 *  3. Integers are 32 bits wide. Texts are narrow, zero-terminated byte
 *     strings; the library copies what it keeps. Text buffers are the host's:
 *     where a size "is not consulted" the buffer must be large enough.
 *  4. Lists are named by number (ZENFO_LIST_...), records by a position that
 *     counts from 0 in the list's present order. A sort, a removal or an
 *     appended record changes positions.
 *  5. A failure returns -1 unless stated, and never throws. Failures that are
 *     logged go to the error file (SetErrorFile). A fault inside an operation
 *     is logged as "Runtime error".
 *  6. A callback may call the operations that only read, SetState, the save
 *     and the display operations. Every operation that adds, removes or
 *     reorders records, compiles a pattern or runs a search returns its
 *     failure value, unlogged, while another operation is running.
 */
#ifndef ZENFOFR130_H_
#define ZENFOFR130_H_

#include <stdint.h>

/* The version of the library that this header belongs to; the build reads it
 * here. A host that needs an operation of a later version can ask with
 * #if ZENFO_VERSION_NUMBER >= 10400. */
#define ZENFO_VERSION "1.3.0"
#define ZENFO_VERSION_NUMBER 10300 /* major * 10000 + minor * 100 + patch */

#ifdef _WIN32
#include <wchar.h>
#define ZENFO_CALL __stdcall
#define ZENFO_API
typedef wchar_t ZenfoWideChar;
#else
#define ZENFO_CALL
#define ZENFO_API __attribute__((visibility("default")))
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
  ZENFO_LIST_OTHER_FILES = 0,      /* files for the host's own use */
  ZENFO_LIST_RUN_FILES = 1,        /* files that runs work through */
  ZENFO_LIST_PAIRS = 2,            /* find and replace strings */
  ZENFO_LIST_UNDO = 3,             /* safe copies of the last run */
  ZENFO_LIST_RESULT = 4,           /* files with matches */
  ZENFO_LIST_MATCHES = 5,          /* matches of the find pattern */
  ZENFO_LIST_NO_MATCH = 6,         /* files without matches */
  ZENFO_LIST_ERROR = 7,            /* files that could not be searched */
  ZENFO_LIST_VALUES = 8,           /* replace values */
  ZENFO_LIST_EXCLUDED = 9,         /* matches of the exclusion pattern */
  ZENFO_LIST_REPLACE_MATCHES = 10, /* matches of the replace pattern */
  /* Former names; the first list is not the one that runs work through. */
  ZENFO_LIST_FILES_1 = ZENFO_LIST_OTHER_FILES,
  ZENFO_LIST_FILES = ZENFO_LIST_RUN_FILES
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
  void* unused;                        /* stored, never called */
  ZenfoReportCallback report;          /* progress; the result is ignored */
  ZenfoInterruptCallback interrupt;    /* non-zero asks to stop */
  ZenfoTextCallback status;            /* status text; the result is ignored */
  ZenfoTextCallback file_question;     /* AddFileToList: 0 skip, 1 add, 2 skip
                                          this and all later, 3 add all */
  ZenfoOptionCallback option_question; /* runs: 0 skip, 1 take, 2 stop,
                                          3 take this and all later */
} CallbackTable;

/* What get_word_count() fills. */
typedef struct TextCounts {
  uint32_t size;  /* bytes of the file */
  uint32_t words; /* runs of bytes other than 0 to 32 and 127 */
  uint32_t lines; /* CR LF pairs; nothing else ends a line */
} TextCounts;

/* File information options: ten bytes; a non-zero byte asks for a fact. */
enum {
  ZENFO_OPTION_ICON = 1,
  ZENFO_OPTION_FILE_NAME = 2,
  ZENFO_OPTION_FOLDER = 3,
  ZENFO_OPTION_TYPE = 4,
  ZENFO_OPTION_ATTRIBUTES = 5, /* bytes 5 to 9 alike: attributes, size, times */
  ZENFO_OPTION_COUNT = 10
};

/* ---- Start, end, callbacks, errors ------------------------------------- */

/* Initialize()
 *
 * Creates all lists and patterns, empty; what an earlier call created is
 * destroyed first, the error file is forgotten, callbacks stay.
 * Returns 1; 0 on failure.
 */
ZENFO_API int32_t ZENFO_CALL Initialize(void);

/* Terminate()
 *
 * Destroys everything that Initialize() created; callbacks stay. Harmless at
 * any time. Returns 1.
 */
ZENFO_API int32_t ZENFO_CALL Terminate(void);

/* SetCallBacks()
 *
 * Copies the table; a null callback switches that kind of call off. A null
 * table changes nothing and is logged. May be called before Initialize().
 */
ZENFO_API void ZENFO_CALL SetCallBacks(const CallbackTable* table);

/* SetErrorFile()
 *
 * Names the text file that failures are appended to, a record each. Empty
 * switches logging off, null keeps the file set before.
 * Returns 1; -1 before Initialize().
 */
ZENFO_API int32_t ZENFO_CALL SetErrorFile(const char* name);

/* ---- Filling file lists ------------------------------------------------- */

/* FindFiles()
 *
 * Appends the files of a search to a list (0, 1, 2, 4, 6 or 7), then gathers
 * facts for every entry of the list.
 *   specification  groups separated by "|". A group is a flag character ("1":
 *                  subfolders too), a path whose last component is a pattern,
 *                  and further patterns, all separated by ";":
 *                  "1C:\src\*.c;*.h|0C:\doc\*.txt". A group whose folder does
 *                  not exist is skipped. Subfolders that are links are not
 *                  followed.
 *   options        ten bytes, see ZENFO_OPTION_...
 *   output_file    "" for the list; else the paths are written to this file,
 *                  one a line ended by CR LF, and the list stays as it is
 * Returns the number of files found; 0 also when the host stopped the gathering
 * of facts; -1 when it stopped the search, for a missing list, options or
 * output file pointer (logged), or a file that cannot be written.
 * Progress: "Now looking for files", "Now retrieving files attributes".
 */
ZENFO_API int32_t ZENFO_CALL FindFiles(int32_t list, const char* specification,
                                       const unsigned char* options,
                                       const char* output_file);

/* AddFileToList()
 *
 * Asks the file question for every entry of the source list and appends new
 * entries for those taken to the target list, with their facts. Both may be
 * the same list, which is asked about in the order that it has at the start.
 * Returns the number added; 0 when the host stopped; -1 for a missing list or
 * options, an answer other than 0 to 3, or no file question (all logged).
 */
ZENFO_API int32_t ZENFO_CALL AddFileToList(int32_t source, int32_t target,
                                           const unsigned char* options);

/* LoadFileList()
 *
 * Replaces list 1 by the paths of a text file, one on each line ended by CR LF
 * (empty lines are none), then gathers facts. Entries whose file is gone, lies
 * in a recycle bin or lacks a fact asked for stay, with the flag -1.
 * Returns the number of entries; 0 when the host stopped it, with the entries
 * so far; -1 for a file that cannot be read (the list is empty then), for an
 * empty name, and for missing options (logged).
 * Progress: "Now importing filenames", "Now processing filenames", "Now
 * retrieving files attributes".
 */
ZENFO_API int32_t ZENFO_CALL LoadFileList(const char* file,
                                          const unsigned char* options);

/* SaveFileList()
 *
 * Writes the paths of the selected entries of list 1, one a line.
 * Returns the lines written; 0 when the host stopped it, with the file so far;
 * -1 for an empty name or a file that cannot be opened (logged), or written.
 * Progress: "Now saving list of files".
 */
ZENFO_API int32_t ZENFO_CALL SaveFileList(const char* file);

/* SaveResultFileList()
 *
 * Writes the paths of a list's entries by their flag, selected or not: with
 * `flagged` those whose flag is not 0, else those whose flag is 0.
 * Results as for SaveFileList(); an empty name is logged as "The list pointer
 * is NULL".
 */
ZENFO_API int32_t ZENFO_CALL SaveResultFileList(int32_t list, const char* file,
                                                int32_t flagged);

/* ---- One entry ----------------------------------------------------------
 *
 * Text accessors empty the buffer, then copy the whole text with its NUL; the
 * size is not consulted. They return 1, or -1 (not logged) for a missing list,
 * entry, text or buffer, and for records that are no files.
 */

/* File name: what follows the last path separator (option byte 2). */
ZENFO_API int32_t ZENFO_CALL GetFilename(int32_t list, uint32_t index,
                                         char* buffer, uint32_t size);
/* Complete path. */
ZENFO_API int32_t ZENFO_CALL GetFullName(int32_t list, uint32_t index,
                                         char* buffer, uint32_t size);
/* Sets the path; folder and file name follow. A null or empty text is refused
 * and logged. */
ZENFO_API int32_t ZENFO_CALL SetFullName(int32_t list, uint32_t index,
                                         const char* text);
/* Folder, without the last separator (option byte 3). */
ZENFO_API int32_t ZENFO_CALL GetDirectory(int32_t list, uint32_t index,
                                          char* buffer, uint32_t size);
/* The shell's type name (option byte 4). */
ZENFO_API int32_t ZENFO_CALL GetType(int32_t list, uint32_t index, char* buffer,
                                     uint32_t size);
/* Creation time as local time, "dd/mm/yyyy hh:mm:ss". A time that cannot be
 * shown returns -1 and is logged. */
ZENFO_API int32_t ZENFO_CALL GetCTime(int32_t list, uint32_t index,
                                      char* buffer, uint32_t size);
/* Last access, "dd/mm/yyyy hh:mm": no seconds. */
ZENFO_API int32_t ZENFO_CALL GetATime(int32_t list, uint32_t index,
                                      char* buffer, uint32_t size);
/* Last write, "dd/mm/yyyy hh:mm:ss". */
ZENFO_API int32_t ZENFO_CALL GetMTime(int32_t list, uint32_t index,
                                      char* buffer, uint32_t size);
/* Size: "1.5 KB" above 1024 bytes, else "1024 B". */
ZENFO_API int32_t ZENFO_CALL GetSize(int32_t list, uint32_t index, char* buffer,
                                     uint32_t size);
/* Attribute letters out of "RHASC": read-only, hidden, archive, system,
 * compressed; empty when none is set. */
ZENFO_API int32_t ZENFO_CALL GetAttributes(int32_t list, uint32_t index,
                                           char* buffer, uint32_t size);
/* Index of the small icon (option byte 1), also stored in *icon; *image_list
 * receives the system image list. Either pointer may be null. Linux: 0. */
ZENFO_API int32_t ZENFO_CALL GetIcon(int32_t list, uint32_t index,
                                     int32_t* image_list, int32_t* icon);
/* The entry's flag: 0 all facts gathered, -1 one is missing (or no entry);
 * runs store the matches found. */
ZENFO_API int32_t ZENFO_CALL GetFlag(int32_t list, uint32_t index);
/* 1 when the file lies in a recycle-bin folder, else 0. */
ZENFO_API int32_t ZENFO_CALL IsTrashed(int32_t list, uint32_t index);

/* ---- Records of any kind ------------------------------------------------- */

/* State of a record: 0 not selected, 1 selected. */
ZENFO_API int32_t ZENFO_CALL GetState(int32_t list, uint32_t index);

/* SetState()
 *
 * Changes the state of one record, or of all (index -1): action 0 deselects, 1
 * selects, -1 toggles.
 * Returns the records changed (so far, when the host stopped); 0 for any other
 * action; -1 for a missing list or record.
 */
ZENFO_API int32_t ZENFO_CALL SetState(int32_t list, int32_t index,
                                      int32_t action);

/* GetCount()
 *
 * Counts records by state; -1 counts all. Returns -1 for a missing list or a
 * selector below -1. Progress: "Now counting entries".
 */
ZENFO_API int32_t ZENFO_CALL GetCount(int32_t list, int32_t selector);

/* GetFileFlagCount()
 *
 * Counts files by flag: above 0, those whose flag is 1 or more; 0 or -1, those
 * whose flag is that. -1 for a missing list or a value below -1.
 */
ZENFO_API int32_t ZENFO_CALL GetFileFlagCount(int32_t list, int32_t value);

/* GetSizeTotal(), GetSizeSelection()
 *
 * The sizes of all, or of the selected, files of a list: "1.50 KB" and
 * "1.50 KB (1536 Bytes)". Either buffer may be null; 64 bytes hold any text.
 * Return 1; -1 for a missing list.
 */
ZENFO_API int32_t ZENFO_CALL GetSizeTotal(int32_t list, char* short_text,
                                          char* long_text);
ZENFO_API int32_t ZENFO_CALL GetSizeSelection(int32_t list, char* short_text,
                                              char* long_text);

/* Clear()
 *
 * Removes all records of a list. Returns 1; 0 for a missing list (logged).
 */
ZENFO_API int32_t ZENFO_CALL Clear(int32_t list);

/* Refresh()
 *
 * Gathers the asked facts of one entry, or of all (index -1), again; flags stay
 * as they are.
 * Returns the entries refreshed (so far, when the host stopped); -1 for a
 * missing list, entry or options.
 */
ZENFO_API int32_t ZENFO_CALL Refresh(int32_t list, int32_t index,
                                     const unsigned char* options);

/* DeleteItem()
 *
 * Removes one record; the list goes back to the order in which records were
 * added. Returns 1, even for an index after the list's end; -1 for a missing
 * list.
 */
ZENFO_API int32_t ZENFO_CALL DeleteItem(int32_t list, uint32_t index);

/* RemoveSelection()
 *
 * Removes the records whose state is 1; the list goes back to the order in
 * which records were added.
 * Returns the records left (also when the host stopped it); -1 for a missing
 * list (logged). Progress: "Now removing items".
 */
ZENFO_API int32_t ZENFO_CALL RemoveSelection(int32_t list);

/* ---- Sorting ---------------------------------------------------------------
 *
 * A sort lasts until a record is added or removed. Case is ignored; records
 * that lack what is compared come first. Equal records are in no particular
 * order. Any value of descending except 0 reverses the order.
 * Sorts return 1; -1 for fewer than two records, for a missing list, or for an
 * option above the last (logged). Progress: "Now sorting entries".
 */

/* Sort()
 *
 * Sorts any list; a missing one is logged. Options: 0 state, 1 icon, 2 file
 * name, 3 folder, 4 type, 5 creation, 6 last access, 7 last write, 8 size, 9
 * attributes, 10 path (first text), 11 file name, then size, last write and
 * attributes, 12 state, 13 first text, 14 second text (folder, replace
 * string), 15 state, 16 first text. Times that are 2^31 steps of 100 ns apart
 * compare the wrong way.
 */
ZENFO_API int32_t ZENFO_CALL Sort(int32_t list, uint32_t option,
                                  int32_t descending);

/* List 2: 0 state, 1 find string, 2 replace string. */
ZENFO_API int32_t ZENFO_CALL SortString(uint32_t option, int32_t descending);
/* List 3: 0 state, 1 original, 2 safe copy, 3 time as text. */
ZENFO_API int32_t ZENFO_CALL SortUndo(uint32_t option, int32_t descending);
/* Lists 4, 6 and 7: 0 flag, 1 file name, 2 folder, 3 flag. */
ZENFO_API int32_t ZENFO_CALL SortResult(uint32_t option, int32_t descending);
ZENFO_API int32_t ZENFO_CALL SortResultNoMatch(uint32_t option,
                                               int32_t descending);
ZENFO_API int32_t ZENFO_CALL SortResultError(uint32_t option,
                                             int32_t descending);
/* List 8: 0 state, 1 value. Option 2 has no key: it is logged as "Runtime
 * error" and returns -1. */
ZENFO_API int32_t ZENFO_CALL sort_replace_list(uint32_t option,
                                               int32_t descending);

/* SelectDuplicates()
 *
 * Deselects all records, sorts the list by an option (0 to 11 of Sort()) and
 * selects all but one of each group of equal records.
 * Returns the records selected; -1 for fewer than two, for a missing list or
 * an option above 11 (logged). Progress: "Now deselecting all entries", "Now
 * selecting duplicates".
 */
ZENFO_API int32_t ZENFO_CALL SelectDuplicates(int32_t list, uint32_t option);

/* ---- Whole lists of files --------------------------------------------------
 */

/* CompareLists()
 *
 * Compares list 1 with list 2, both sorted by an option of Sort() up to 18 (17
 * second text, 18 third text; above: 0). Entries that both hold get the flag
 * 1, all others 0. With keep the former are selected, with keep 0 the others.
 * Returns 1; -1 before Initialize(). Progress: "Now de-selecting all entries",
 * "Now sorting lists", "Now comparing lists".
 */
ZENFO_API int32_t ZENFO_CALL CompareLists(uint32_t option, int32_t keep);

/* FindInList()
 *
 * Finds the files whose column holds a text.
 *   field           2 file name, 3 folder, 4 type, 5 to 7 times of creation,
 *                   access and write, 8 size, 9 attributes, as the accessors
 *                   show them; any other finds nothing
 *   whole_word      1: no letter or digit may touch the occurrence
 *   case_sensitive  1: as given; any other value ignores case
 *   start           position of the first file looked at
 *   position        1: the first occurrence must begin the column, 2: the last
 *                   one must end it; any other value: anywhere
 *   first_only      not 0: returns the position of the first file found
 *   select          not 0: deselects all records, then selects those found
 * Returns the number found (so far, when the host stopped it), or with
 * first_only a position; -1 when that finds none, for a missing list, an empty
 * text or a start after the list's end.
 */
ZENFO_API int32_t ZENFO_CALL FindInList(int32_t list, uint32_t field,
                                        const char* text, uint32_t whole_word,
                                        uint32_t case_sensitive, uint32_t start,
                                        int32_t position, uint32_t first_only,
                                        int32_t select);

/* FindInFiles()
 *
 * Selects every file of a list that holds a text. Each file is searched up to
 * its first NUL byte.
 *   clear_selection  non-zero deselects all records first
 *   whole_word       non-zero: no letter or digit may touch the occurrence
 *   case_sensitive   zero ignores case
 * Returns the number of files that hold it; -1 for a missing list or an empty
 * text. Files that cannot be loaded are skipped. The host cannot stop it.
 */
ZENFO_API int32_t ZENFO_CALL FindInFiles(int32_t list, const char* text,
                                         int32_t clear_selection,
                                         int32_t whole_word,
                                         int32_t case_sensitive);

/* SaveSelection()
 *
 * Writes the columns of the selected files, a line ended by CR LF each.
 *   separator  put between the columns as it is; nothing is quoted
 *   columns    ten bytes; byte n not 0 asks for column n of FindInList()
 * Returns the files written (so far, when the host stopped it), also when no
 * column is asked for; -1 for a missing list, an empty name or separator, or a
 * file that cannot be written. Progress: "Now saving selection to file".
 */
ZENFO_API int32_t ZENFO_CALL SaveSelection(int32_t list, const char* file,
                                           const char* separator,
                                           const unsigned char* columns);

/* Does nothing; returns 0. */
ZENFO_API int32_t ZENFO_CALL CopyToClipboard(void);

/* ---- String pairs and replace values ---------------------------------------
 *
 * List 2 holds find and replace strings, list 8 the values that replacements by
 * list take. An empty text is stored as a missing one, whose accessor returns
 * -1 and which files show as "(null)". Files hold one record a line, ended by
 * CR LF, without escapes. Refusals are not logged.
 */

/* Text accessors, as those of one entry: the strings of a pair of list 2, a
 * value of list 8. */
ZENFO_API int32_t ZENFO_CALL GetFindString(uint32_t index, char* buffer,
                                           uint32_t size);
ZENFO_API int32_t ZENFO_CALL GetReplaceString(uint32_t index, char* buffer,
                                              uint32_t size);
ZENFO_API int32_t ZENFO_CALL get_replace_value(uint32_t index, char* buffer,
                                               uint32_t size);

/* AddStringPair()
 *
 * Appends a pair, not selected. Returns the number of pairs.
 */
ZENFO_API int32_t ZENFO_CALL AddStringPair(const char* find,
                                           const char* replace);

/* UpdateStringPair()
 *
 * Sets both strings of a pair; its state stays. Returns 1; -1 without a pair at
 * the index.
 */
ZENFO_API int32_t ZENFO_CALL UpdateStringPair(uint32_t index, const char* find,
                                              const char* replace);

/* LoadStringPair()
 *
 * Replaces the pairs by those of a file: on each line the find string, a tab,
 * the replace string; what follows a second tab is ignored. An empty line ends
 * the load with -1.
 * Returns the number of pairs; 0 when the host stopped it; -1 also for a file
 * that is missing or empty. The pairs read so far stay.
 */
ZENFO_API int32_t ZENFO_CALL LoadStringPair(const char* file);

/* SaveStringPair()
 *
 * Writes all pairs, or with selected_only not 0 the selected ones.
 * Returns the number written; 0 when the host stopped it, with the file so far;
 * -1 when the file cannot be written. Progress: "Now saving string pairs".
 */
ZENFO_API int32_t ZENFO_CALL SaveStringPair(const char* file,
                                            int32_t selected_only);

/* load_replace_list()
 *
 * Replaces the values by the lines of a file; empty lines are skipped. The list
 * is cleared even when the file is missing.
 * Returns the same as LoadStringPair().
 */
ZENFO_API int32_t ZENFO_CALL load_replace_list(const char* file);

/* save_replace_list()
 *
 * Writes all values. Lines end in CR CR LF, so that loading the file again
 * adds a CR to every value.
 * Returns the same as SaveStringPair().
 */
ZENFO_API int32_t ZENFO_CALL save_replace_list(const char* file);

/* ---- Patterns --------------------------------------------------------------
 *
 * A pattern is up to three texts: a start marker, the main text, an end marker.
 * Only what the main text matches is a match; the markers must be directly
 * around it. Each text is a literal or, with its is-pattern flag, written in
 * the pattern language; its convert flag turns caret names ("^M") into control
 * characters and, in a literal, removes escapes. All return 1; 0 when nothing
 * is left to search for; -1 for an empty main text (which clears the pattern
 * all the same) or before Initialize().
 */

/* SetPattern(), SetExclusionPattern(), set_replace_pattern()
 *
 * Compile the pattern to find, the pattern whose matches are areas to stay out
 * of (or within), and the pattern whose matches become replacements. Markers
 * may be null or empty.
 */
ZENFO_API int32_t ZENFO_CALL SetPattern(
    const char* start, const char* main, const char* end,
    int32_t start_is_pattern, int32_t main_is_pattern, int32_t end_is_pattern,
    int32_t convert_start, int32_t convert_main, int32_t convert_end);
ZENFO_API int32_t ZENFO_CALL SetExclusionPattern(
    const char* start, const char* main, const char* end,
    int32_t start_is_pattern, int32_t main_is_pattern, int32_t end_is_pattern,
    int32_t convert_start, int32_t convert_main, int32_t convert_end);
ZENFO_API int32_t ZENFO_CALL set_replace_pattern(
    const char* start, const char* main, const char* end,
    int32_t start_is_pattern, int32_t main_is_pattern, int32_t end_is_pattern,
    int32_t convert_start, int32_t convert_main, int32_t convert_end);

/* SetPatternTag()
 *
 * Compiles the pattern to find as: first text, any run of bytes, second text.
 *   count_start  zero: the match begins with the first text; else after it. The
 *                second text belongs to the match.
 * Both texts must be given, else -1.
 */
ZENFO_API int32_t ZENFO_CALL SetPatternTag(const char* first,
                                           const char* second,
                                           int32_t count_start,
                                           int32_t is_pattern, int32_t convert);

/* set_operators()
 *
 * Replaces the user character classes of all three patterns by those that a
 * definition file lists. Patterns already compiled stay as they are.
 * Returns 1; -1, with nothing changed, for a missing, unreadable or empty file.
 */
ZENFO_API int32_t ZENFO_CALL set_operators(const char* file);

/* ---- Searching ------------------------------------------------------------
 *
 * Runs load one file after the other, each from the selected entries of list 1
 * or, with the ending _f, from the lines of a list file (one path a line, ended
 * by CR LF). Arguments that all of them have:
 *   case_flag     zero ignores case
 *   whole_words   non-zero: no letter or digit may touch a match
 *   binary_check  non-zero rejects files with a control byte other than TAB, LF
 *                 and CR after their first byte
 *   report        path of a report of all selected matches; null or empty for
 *                 none. If it cannot be created, the run continues without it.
 *   ask_user      non-zero asks the option question for every file with matches
 *                 (its number: 1 while a report is written, else 0). Inside the
 *                 question lists 5 and 9 hold the file's matches, which can be
 *                 deselected, and the display shows them.
 *   display       non-zero: matches are searched for inside the areas of the
 *                 exclusion pattern instead of outside
 *   summary       _f: path of the result summary, "path, found 3" a line
 * With _f list file, summary and report are three files, and the list file is
 * not the error file, under whatever names: else -1 with nothing opened.
 *
 * Files go to list 4 (with selected matches, their number as flag), 6 (without)
 * or 7 (could not be loaded, or rejected: the error file says why); the _f runs
 * write a summary line instead.
 *
 * Return the number of selected matches, after the user's stop too; 0 when the
 * host interrupts at the start of a file; -1 for an empty list file or summary
 * path, files that cannot be opened or written, no compiled pattern, an invalid
 * answer (logged), or an interrupt elsewhere.
 * Progress: "Now loading file", "Now binary checking", "Now parsing file",
 * "Preparing for display", each with the file's path, and "Now reporting to
 * file" with the report's.
 *
 * A run over many entries loads small files ahead of their turn with threads of
 * its own, which end with the run, and searches files there when it has nothing
 * to do but count. All callbacks come from the thread that made
 * the call, and calls and results are the same as without threads. The
 * environment variable ZENFO_THREADS, read at the start of a run, limits the
 * threads, the caller's included: 1 for none of its own, 8 at most; without it
 * there are as many as processors. On Windows a run has none when callbacks for
 * interrupts, progress, status texts or the option question are set.
 */

/* FindBlock(), FindBlock_f()
 *
 * Search for the pattern compiled by SetPattern() or SetPatternTag(), outside
 * the areas of the exclusion pattern if there is one.
 */
ZENFO_API int32_t ZENFO_CALL FindBlock(int32_t case_flag, int32_t whole_words,
                                       int32_t binary_check, const char* report,
                                       int32_t ask_user, int32_t display);
ZENFO_API int32_t ZENFO_CALL FindBlock_f(int32_t case_flag, int32_t whole_words,
                                         int32_t binary_check,
                                         const char* report, int32_t ask_user,
                                         const char* list_file,
                                         const char* summary, int32_t display);

/* FindString(), FindString_f()
 *
 * Search each file for the find string of every selected pair of list 2 in
 * turn; a file's number is the sum. Question 0 skips one string of one file.
 *   is_pattern, convert  how each find string is compiled, see SetPattern()
 *   display              FindString_f() takes 0 whatever is passed
 * -1 also for a selected pair without a find string.
 */
ZENFO_API int32_t ZENFO_CALL FindString(int32_t case_flag, int32_t whole_words,
                                        int32_t binary_check,
                                        const char* report, int32_t is_pattern,
                                        int32_t convert, int32_t ask_user,
                                        int32_t display);
ZENFO_API int32_t ZENFO_CALL FindString_f(
    int32_t case_flag, int32_t whole_words, int32_t binary_check,
    const char* report, int32_t is_pattern, int32_t convert, int32_t ask_user,
    const char* list_file, const char* summary, int32_t display);

/* FindExcludedArea()
 *
 * Searches for the exclusion pattern alone.
 */
ZENFO_API int32_t ZENFO_CALL FindExcludedArea(int32_t case_flag,
                                              int32_t whole_words,
                                              int32_t binary_check,
                                              const char* report);

/* ---- Replacing ------------------------------------------------------------
 *
 * Runs like those above that rewrite every file with selected matches. The text
 * of a file is written up to its first NUL byte: what follows is lost.
 * Arguments besides those of a search:
 *   safe_store    non-zero: a safe copy of each file is made before it is
 *                 rewritten (see SetUndoFile()); a file whose copy fails is
 *                 skipped, logged and put into list 7. Every run empties the
 *                 safe store, whatever this says.
 *   edit_mode     1 inserts before the match, 2 after it, others replace it
 *   expand        non-zero: caret names in the replacement become control
 *                 characters
 *
 * A file that another program changed, replaced or removed after it was loaded
 * is not touched: it is skipped in the same way, with the message "PATH was
 * changed meanwhile. File has been skipped". So is a file that another run is
 * rewriting at that moment.
 *
 * The question's number is 2. Empty files count as files that cannot be loaded.
 * The _f summaries read "path, found 3, replaced 3".
 *
 * Return the number of matches rewritten; 0 when the host interrupts at the
 * start of a file or while one is loaded; -1 as the searches do, and when a
 * file cannot be rewritten: it is then left as far as it was written, and only
 * its safe copy has it whole. A file that cannot be opened stays as it is; on
 * Windows also one that another program has mapped or locked.
 * Progress: "Now replacing in file", "Now inserting before in file", "Now
 * inserting after in file", each with the file's path.
 */

/* ReplaceBlock(), ReplaceBlock_f()
 *
 * Replace the matches of the compiled pattern.
 *   text         the replacement; null or empty deletes
 *   use_list     non-zero: value i of list 8 replaces match i; matches without
 *                a value stay
 *   use_pattern  non-zero: match i of the replace pattern in the same file
 *                replaces match i; decides when both are set
 *   match_index  with use_pattern, k > 0: its k-th match replaces all
 */
ZENFO_API int32_t ZENFO_CALL
ReplaceBlock(const char* text, int32_t case_flag, int32_t whole_words,
             int32_t binary_check, int32_t ask_user, int32_t safe_store,
             int32_t edit_mode, int32_t use_list, int32_t use_pattern,
             int32_t match_index, int32_t display, int32_t expand);
ZENFO_API int32_t ZENFO_CALL
ReplaceBlock_f(const char* text, int32_t case_flag, int32_t whole_words,
               int32_t binary_check, int32_t ask_user, int32_t safe_store,
               const char* list_file, const char* summary, int32_t edit_mode,
               int32_t use_list, int32_t use_pattern, int32_t match_index,
               int32_t display, int32_t expand);

/* ReplaceBlockNbr(), ReplaceBlockNbr_f()
 *
 * The same with a running number in place of every placeholder in the text.
 * Ignored with use_list or use_pattern.
 *   first, step  the numbers: first, first + step, ...; deselected matches use
 *                up none
 *   run_on       zero: every file begins with the first number again
 * -1 also for an empty text or placeholder.
 */
ZENFO_API int32_t ZENFO_CALL ReplaceBlockNbr(
    const char* text, int32_t case_flag, int32_t whole_words,
    int32_t binary_check, int32_t ask_user, int32_t safe_store,
    int32_t edit_mode, int32_t use_list, int32_t use_pattern,
    int32_t match_index, int32_t display, int32_t expand,
    const char* placeholder, int32_t first, int32_t step, int32_t run_on);
ZENFO_API int32_t ZENFO_CALL
ReplaceBlockNbr_f(const char* text, int32_t case_flag, int32_t whole_words,
                  int32_t binary_check, int32_t ask_user, int32_t safe_store,
                  const char* list_file, const char* summary, int32_t edit_mode,
                  int32_t use_list, int32_t use_pattern, int32_t match_index,
                  int32_t display, int32_t expand, const char* placeholder,
                  int32_t first, int32_t step, int32_t run_on);

/* ReplaceString(), ReplaceString_f()
 *
 * Replace the find string of every selected pair of list 2 by its replace
 * string, one pair after the other, each in the text that the one before has
 * left.
 *   convert  also expands the replace strings
 */
ZENFO_API int32_t ZENFO_CALL ReplaceString(int32_t case_flag,
                                           int32_t whole_words,
                                           int32_t binary_check,
                                           int32_t is_pattern, int32_t convert,
                                           int32_t ask_user, int32_t safe_store,
                                           int32_t display);
ZENFO_API int32_t ZENFO_CALL ReplaceString_f(
    int32_t case_flag, int32_t whole_words, int32_t binary_check,
    int32_t is_pattern, int32_t convert, int32_t ask_user, int32_t safe_store,
    const char* list_file, const char* summary, int32_t display);

/* ReplaceStringNbr(), ReplaceStringNbr_f()
 *
 * The same with running numbers in the replace strings.
 *   run_on  zero: every string of every file begins with the first number again
 */
ZENFO_API int32_t ZENFO_CALL
ReplaceStringNbr(int32_t case_flag, int32_t whole_words, int32_t binary_check,
                 int32_t is_pattern, int32_t convert, int32_t ask_user,
                 int32_t safe_store, int32_t display, const char* placeholder,
                 int32_t first, int32_t step, int32_t run_on);
ZENFO_API int32_t ZENFO_CALL ReplaceStringNbr_f(
    int32_t case_flag, int32_t whole_words, int32_t binary_check,
    int32_t is_pattern, int32_t convert, int32_t ask_user, int32_t safe_store,
    const char* list_file, const char* summary, int32_t display,
    const char* placeholder, int32_t first, int32_t step, int32_t run_on);

/* change_case_i(), change_case_f()
 *
 * Turn the letters a to z of every selected match to upper case (upper
 * non-zero) or A to Z to lower case, in each match up to its first NUL byte;
 * the rest of the file stays, NUL bytes included.
 * change_case_i() returns the number of matches changed. change_case_f() ends
 * after the first file that it changed and returns 0.
 * Progress: "Now changing case in file" and the path.
 */
ZENFO_API int32_t ZENFO_CALL change_case_i(int32_t case_flag,
                                           int32_t whole_words,
                                           int32_t binary_check,
                                           int32_t ask_user, int32_t safe_store,
                                           int32_t upper, int32_t display);
ZENFO_API int32_t ZENFO_CALL
change_case_f(int32_t case_flag, int32_t whole_words, int32_t binary_check,
              int32_t ask_user, int32_t safe_store, const char* list_file,
              const char* summary, int32_t upper, int32_t display);

/* ---- Undo -----------------------------------------------------------------
 *
 * Safe copies are in the folder of the undo list file. Every replace or case
 * run deletes all files in that folder (but not in its subfolders): give it a
 * folder of its own. Only the last run can be undone.
 *
 * A host can make runs that change files, and Undo(), more careful by the
 * environment variable ZENFO_SAFETY (set with SetEnvironmentVariable or
 * setenv). It holds words, separated by commas, and is read at the start of
 * every run and of Undo().
 *   sync     For a loss of power. Safe copies and their lines are flushed to
 *            the disk before the first of their files is rewritten; copies are
 *            made in advance for a batch of files, so that one flush serves
 *            them all. During a run the undo list file may name files that are
 *            not rewritten yet. A run, and Undo(), return when what they wrote
 *            is flushed, and Undo() deletes safe copies only then.
 *   beside   For runs without safe copies. A file is written beside the old one
 *            and takes its place in one step: a run that breaks off leaves the
 *            old file. Not for links, for files with several names or with
 *            another owner and, on Linux, for files with extended attributes:
 *            these are written in place.
 *   nolinks  A file that is reached through a link cannot be loaded by a run
 *            that changes files (on Windows: that is a link itself).
 *   skip     A file that cannot be opened for writing, or that another program
 *            maps on Windows, is skipped as one without a safe copy is: error
 *            list, summary line, and the run goes on. Without it the run ends.
 */

/* SetUndoFile()
 *
 * Names the undo list file and creates it, and the folders above it, when
 * missing. Without one no safe copies can be made.
 * Returns 1; -1 for an empty path, a folder, or a file that cannot be created,
 * and, with nothing changed, while Undo() or a run that changes files goes on.
 */
ZENFO_API int32_t ZENFO_CALL SetUndoFile(const char* file);

/* GetUndoList()
 *
 * Fills list 3 from the undo list file. Returns the number of records; 0 when
 * the file is missing or empty; -1 when none is named.
 * Reading ends at a line of fewer than three fields or when the host stops it.
 * Undo() keeps the lines from there on in the file as they are.
 * Progress: "Retrieving list of safe-stored files".
 */
ZENFO_API int32_t ZENFO_CALL GetUndoList(void);

/* Undo()
 *
 * Copies the safe copy of every selected record of list 3 back over its
 * original, whatever has changed in it since, and removes copy and record.
 * Files that cannot be restored stay in the list and are written to the undo
 * error file (the undo list file's path with ".error").
 * Returns the number of records left, without the lines that GetUndoList() did
 * not read; 0 when there is nothing to restore; -1 when no undo list file is
 * named or it cannot be rewritten. One that cannot be written to begin with
 * leaves everything as it is.
 * Progress: "Restoring original files".
 */
ZENFO_API int32_t ZENFO_CALL Undo(void);

/* ClearUndoList(): empties list 3; files stay. */
ZENFO_API int32_t ZENFO_CALL ClearUndoList(void);

/* Text accessors, as those of one entry, for list 3: the file changed, its safe
 * copy, when the copy was made. */
ZENFO_API int32_t ZENFO_CALL GetOrigFile(uint32_t index, char* buffer,
                                         uint32_t size);
ZENFO_API int32_t ZENFO_CALL GetSafeFile(uint32_t index, char* buffer,
                                         uint32_t size);
ZENFO_API int32_t ZENFO_CALL GetSafeTime(uint32_t index, char* buffer,
                                         uint32_t size);

/* ---- Matches ---------------------------------------------------------------
 *
 * Lists 5, 9 and 10 hold matches of the current file, so they can be read only
 * from inside the option question. -1 (not logged) for a missing list, record
 * or buffer.
 */

/* Offset in bytes, as decimal text of at most 10 digits; the size is not
 * consulted. */
ZENFO_API int32_t ZENFO_CALL GetMatchOffset(int32_t list, uint32_t index,
                                            char* buffer, uint32_t size);
/* Length in bytes, likewise. */
ZENFO_API int32_t ZENFO_CALL GetMatchLength(int32_t list, uint32_t index,
                                            char* buffer, uint32_t size);

/* GetMatchText()
 *
 * Copies the bytes of one match into a host buffer, cut to fit.
 *   buffer  at least size + 5 bytes; ends in NUL
 *   size    bytes for the text, the mark " ..." not counted
 * Returns 1. A size of length to length + 4 also copies the bytes after the
 * match; one below length (not 0) cuts and adds the mark.
 * Example: "abcdefghij", size 8 -> "abcdefgh ..." (13 bytes with NUL).
 */
ZENFO_API int32_t ZENFO_CALL GetMatchText(int32_t list, uint32_t index,
                                          char* buffer, uint32_t size);

/* GetMatchReplace()
 *
 * The replacement of one match, in the same manner; the mark is added whenever
 * fewer bytes than the match's length were copied (and not none).
 */
ZENFO_API int32_t ZENFO_CALL GetMatchReplace(int32_t list, uint32_t index,
                                             char* buffer, uint32_t size);

/* The match's own flag: 1, or 0 when it got no replacement value. */
ZENFO_API int32_t ZENFO_CALL get_match_flag(int32_t list, uint32_t index);

/* ---- Counts -----------------------------------------------------------------
 */

/* get_word_count()
 *
 * Counts bytes, words and lines of one file. Returns 1; -1 for a file that
 * cannot be loaded, or when the host stops; the record is then left alone.
 * Progress: "Now counting words in ", "Now counting lines in " and the path.
 */
ZENFO_API int32_t ZENFO_CALL get_word_count(const char* file,
                                            TextCounts* counts);

/* save_occurrences()
 *
 * Writes the text of every selected match of list 5 (each up to its first NUL
 * byte) and a separator after each. Useful only inside the option question,
 * because list 5 is empty after a run.
 * Returns the number written; -1 for an empty argument, a file that cannot be
 * written, or when the host stops.
 */
ZENFO_API int32_t ZENFO_CALL save_occurrences(const char* file,
                                              const char* separator);

/* ---- Display ----------------------------------------------------------- */

/* The text of the current file, laid out as lines and painted into a window of
 * the host. A run fills the display before each option question and empties it
 * after the answer: outside the question the display is empty.
 *
 * Lines, columns and groups count from 0. A group is one match, or one area of
 * the exclusion pattern, in text order; it can lie on several lines. All
 * display operations return -1 before Initialize(), and may be called from
 * callbacks. */

/* PrepareDisplay()
 *
 * Lays the display out again: as a hex dump when SetBytesPerLine() was given a
 * number, else as lines between separators.
 *   separator  what ends a line, kept from now on; null or "" keeps the present
 *              one. At first it is LF CR, in this order, which splits only at
 *              empty lines: give "\r\n" for lines as editors show them.
 *   mode       0 marks the areas of the exclusion pattern, other values what
 *              lies outside them and only the matches inside; of no effect in
 *              a run without areas
 * Returns 1; -1 when no text is shown (the separator is stored all the same) or
 * when the host asks to stop, which leaves the display empty.
 * Example: "ab\r\ncd" with the separator "\r\n" has two lines and a width of 2.
 */
ZENFO_API int32_t ZENFO_CALL PrepareDisplay(const char* separator,
                                            int32_t mode);

/* ResetDisplay()
 *
 * Empties the display, forgets the scroll position and reads the system's
 * colours again. Bytes per line, separator and window stay. Returns 1.
 */
ZENFO_API int32_t ZENFO_CALL ResetDisplay(void);

/* Bytes in a line of the hex dump, 0 (the beginning) for text. A new number
 * counts from the next layout on. Setting returns 1. */
ZENFO_API int32_t ZENFO_CALL SetBytesPerLine(uint32_t bytes);
ZENFO_API int32_t ZENFO_CALL GetBytesPerLine(void);

/* GetLineSeparator()
 *
 * Copies the separator in force, "" before the first layout.
 *   buffer  host memory of at least size + 1 bytes; ends in NUL
 *   size    bytes for the separator, its NUL not counted
 * Returns 1; -1, and an empty text, when the separator is longer.
 */
ZENFO_API int32_t ZENFO_CALL GetLineSeparator(char* buffer, uint32_t size);

/* The layout: lines, columns of the widest one (bytes of a text line; four for
 * each byte of a hex line and two), and the page last painted. */
ZENFO_API int32_t ZENFO_CALL GetDisplayLineCount(void);
ZENFO_API int32_t ZENFO_CALL GetDisplayWidth(void);
ZENFO_API int32_t ZENFO_CALL GetDisplayTopLine(void);
ZENFO_API int32_t ZENFO_CALL GetDisplayLeftColumn(void);
ZENFO_API int32_t ZENFO_CALL GetDisplayPageLines(void);

/* SetDisplayWindow()
 *
 * Chooses the window (HWND) to paint into, shows its scroll bars and sets their
 * ranges, which every layout does from then on. Give null before the window is
 * destroyed.
 * Returns 1; -1 for null, which leaves no window, and always on Linux.
 */
ZENFO_API int32_t ZENFO_CALL SetDisplayWindow(void* window);

/* GetDisplayScrollPos(), GetDisplayScrollTrackPos()
 *
 * Read the window's scroll bars: their positions, and their positions while the
 * user drags one. Null skips a value.
 * Return 1; -1 without a window or when it has no such bar.
 */
ZENFO_API int32_t ZENFO_CALL GetDisplayScrollPos(int32_t* vertical,
                                                 int32_t* horizontal);
ZENFO_API int32_t ZENFO_CALL GetDisplayScrollTrackPos(int32_t* vertical,
                                                      int32_t* horizontal);

/* PaintDisplay()
 *
 * Paints a page and sets the scroll bars to it. Call it on WM_PAINT: it begins
 * and ends painting itself and draws only what is invalid.
 *   top_line, left_column  where the page begins; taken as 0 when all lines,
 *                          or all columns, fit in the window
 *   line_numbers           non-zero: line numbers in a gutter at the left
 *   fixed_font             non-zero: the system's fixed font, else its variable
 *                          one; a column is as wide as its widest character
 * Returns the position of the horizontal scroll bar; -1 without a window.
 */
ZENFO_API int32_t ZENFO_CALL PaintDisplay(uint32_t top_line,
                                          uint32_t left_column,
                                          int32_t line_numbers,
                                          int32_t fixed_font);

/* RepaintDisplay()
 *
 * Paints the same page again and leaves the scroll bars alone.
 *   unused  not read
 * Returns 1; -1 without a window or when it cannot be painted.
 */
ZENFO_API int32_t ZENFO_CALL RepaintDisplay(uint32_t unused,
                                            int32_t line_numbers,
                                            int32_t fixed_font);

/* HitTestDisplay()
 *
 * The group of the match that was last painted at a point of the window, in
 * client coordinates. Areas are not found, nor text matches of more than 8192
 * bytes. Returns its number; -1 when there is none.
 */
ZENFO_API int32_t ZENFO_CALL HitTestDisplay(int32_t x, int32_t y);

/* HighlightGroup()
 *
 * Shows one group in red, and no other; seen at the next paint.
 *   position  receives top line and left column of a page that shows it: those
 *             of the present page where it is in view already
 * Returns 1; -1 for a null position, and for a group that does not exist or of
 * which nothing is seen (no group is highlighted then).
 */
ZENFO_API int32_t ZENFO_CALL HighlightGroup(uint32_t group,
                                            int32_t position[2]);

/* Gives the highlighted group, if any, its colours back. Returns 1. */
ZENFO_API int32_t ZENFO_CALL ClearHighlight(void);

/* MarkGroups()
 *
 * Sets the colours of one group, or of all; seen at the next paint. A
 * highlighted group shows them once the highlight is cleared.
 *   group   its number, 0xFFFFFFFF for all
 *   action  0 plain, 1 as a match, -1 the other background (the text colour
 *           becomes that of a match, but never plain again); others change
 *           nothing
 * Returns 0; -1 for a group that does not exist.
 */
ZENFO_API int32_t ZENFO_CALL MarkGroups(uint32_t group, int32_t action);

#ifdef __cplusplus
}
#endif

#endif /* ZENFOFR130_H_ */
