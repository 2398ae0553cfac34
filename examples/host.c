/* A host in one file: searches a folder, replaces a text, undoes that.
 *   host FOLDER TEXT REPLACEMENT SAFE_FOLDER
 * SAFE_FOLDER receives copies of the changed files. Every replace run first
 * deletes all files in it, so use it for nothing else.
 */
#include "zenfofr130.h"

#include <stdio.h>

/* The operations used here, by ordinal. */
/* clang-format off */
#define OPERATIONS(ROW)                                                      \
  ROW(1, Initialize)    ROW(2, Terminate)       ROW(3, FindFiles)            \
  ROW(12, GetFullName)  ROW(23, SetCallBacks)   ROW(24, SetState)            \
  ROW(26, GetFlag)      ROW(28, GetCount)       ROW(52, FindBlock)           \
  ROW(56, ReplaceBlock) ROW(64, Undo)           ROW(65, SetUndoFile)         \
  ROW(67, SetErrorFile) ROW(71, GetUndoList)    ROW(75, SetPattern)          \
  ROW(78, GetMatchText) ROW(76, GetMatchOffset) ROW(79, GetDisplayLineCount) \
  ROW(88, PrepareDisplay)
/* clang-format on */
/* A pointer to each operation, with its type from the header. */
#define MEMBER(ordinal, name) __typeof__(&name) name;
static struct { OPERATIONS(MEMBER) } zenfo;

#ifdef _WIN32
#include <windows.h>
#define SEPARATOR "\\"
#define BIND(ordinal, name)                                       \
  zenfo.name = (__typeof__(&name))(void (*)(void))GetProcAddress( \
      dll, MAKEINTRESOURCEA(ordinal));                            \
  if (zenfo.name == NULL) return 0;
#else
#define SEPARATOR "/"
#define BIND(ordinal, name) zenfo.name = name;
#endif

static int load(void) {
#ifdef _WIN32
  HMODULE dll = LoadLibraryA("ZenfoFR130.dll");
  if (dll == NULL) return 0;
#endif
  OPERATIONS(BIND)
  return 1;
}

/* Called for each file with matches while the run waits: only now do matches
 * and the display exist. Return 0 to skip the file, 1 to take it, 2 to stop. */
static int32_t ZENFO_CALL on_question(const ZenfoWideChar* path, int32_t kind) {
  char offset[16], text[64 + 5];
  int32_t i;
  (void)path, (void)kind;
  zenfo.PrepareDisplay("\n", 0);
  printf("%d lines:", (int)zenfo.GetDisplayLineCount());
  for (i = 0; i < zenfo.GetCount(ZENFO_LIST_MATCHES, -1); ++i) {
    zenfo.GetMatchOffset(ZENFO_LIST_MATCHES, i, offset, 16);
    zenfo.GetMatchText(ZENFO_LIST_MATCHES, i, text, 64);
    printf(" '%s' at %s", text, offset);
  }
  printf("\n");
  return 1;
}

static int start(const char* safe_folder) {
  CallbackTable callbacks = {NULL, NULL, NULL, NULL, NULL, on_question};
  char path[1024];
  zenfo.SetCallBacks(&callbacks);
  if (zenfo.Initialize() != 1) return 0;
  snprintf(path, sizeof path, "%s.errors", safe_folder);
  zenfo.SetErrorFile(path);
  snprintf(path, sizeof path, "%s" SEPARATOR "undo.txt", safe_folder);
  return zenfo.SetUndoFile(path) == 1;
}

/* Lists the files of a folder and its subfolders and selects them: runs take
 * the selected files of this list. */
static int32_t list_files(const char* folder) {
  const unsigned char no_facts[ZENFO_OPTION_COUNT] = {0};
  char specification[1024];
  snprintf(specification, sizeof specification, "1%s" SEPARATOR "*", folder);
  zenfo.FindFiles(ZENFO_LIST_RUN_FILES, specification, no_facts, "");
  return zenfo.SetState(ZENFO_LIST_RUN_FILES, -1, 1);
}

static int32_t search(const char* text, int32_t ask) {
  zenfo.SetPattern(NULL, text, NULL, 0, 0, 0, 0, 0, 0);
  return zenfo.FindBlock(1 /* case as given */, 0, 1 /* skip binary files */,
                         NULL, ask, 0);
}

static void show_result(void) {
  const int32_t count = zenfo.GetCount(ZENFO_LIST_RESULT, -1);
  char path[4096];
  int32_t i;
  for (i = 0; i < count; ++i) {
    zenfo.GetFullName(ZENFO_LIST_RESULT, i, path, sizeof path);
    printf("%s: %d\n", path, (int)zenfo.GetFlag(ZENFO_LIST_RESULT, i));
  }
}

/* Returns the number of files that could not be restored. */
static int32_t undo(void) {
  zenfo.GetUndoList();
  zenfo.SetState(ZENFO_LIST_UNDO, -1, 1);
  return zenfo.Undo();
}

int main(int argc, char** argv) {
  if (argc != 5 || !load() || !start(argv[4])) return 2;
  printf("%d files\n", (int)list_files(argv[1]));
  printf("%d found\n", (int)search(argv[2], 1));
  show_result();
  printf("%d replaced\n",
         (int)zenfo.ReplaceBlock(argv[3], 1, 0, 1, 0, 1 /* safe copies */, 0, 0,
                                 0, 0, 0, 0));
  printf("%d found now\n", (int)search(argv[2], 0));
  printf("%d not brought back\n", (int)undo());
  printf("%d found again\n", (int)search(argv[2], 0));
  return zenfo.Terminate() == 1 ? 0 : 2;
}
