// The exports of the built library: which operations, under which ordinals or
// names, and that each removes exactly its own arguments.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <set>
#include <string>

#include "frame/rows.h"
#include "support/temp_folder.h"
#include "zenfofr130.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#include <elf.h>
#endif

namespace zenfo::test {
namespace {

std::map<int, std::string> expected_exports() {
  std::map<int, std::string> expected;
  for (const ExportRow& row : kExportRows) {
    expected[row.ordinal] = row.routine;
  }
  return expected;
}

// Hosts in other languages define these layouts by hand.
static_assert(offsetof(CallbackTable, report) == 1 * sizeof(void*));
static_assert(offsetof(CallbackTable, interrupt) == 2 * sizeof(void*));
static_assert(offsetof(CallbackTable, status) == 3 * sizeof(void*));
static_assert(offsetof(CallbackTable, file_question) == 4 * sizeof(void*));
static_assert(offsetof(CallbackTable, option_question) == 5 * sizeof(void*));
static_assert(sizeof(CallbackTable) == 6 * sizeof(void*));
static_assert(offsetof(ProgressRecord, total) == 0);
static_assert(offsetof(ProgressRecord, position) == 4);
static_assert(offsetof(ProgressRecord, percent) == 8);
static_assert(sizeof(ProgressRecord) == 12);
static_assert(offsetof(TextCounts, size) == 0);
static_assert(offsetof(TextCounts, words) == 4);
static_assert(offsetof(TextCounts, lines) == 8);
static_assert(sizeof(TextCounts) == 12);

// Hosts that use the former names of the two file lists still compile.
static_assert(ZENFO_LIST_OTHER_FILES == 0 && ZENFO_LIST_FILES_1 == 0);
static_assert(ZENFO_LIST_RUN_FILES == 1 && ZENFO_LIST_FILES == 1);

TEST(ExportTable, RowsRiseByOrdinalAndLeaveTheUnusedNumbersOut) {
  const std::set<int> unused = {21, 22, 49, 51, 54, 55, 58, 59, 62, 63};
  int last = 0;
  for (const ExportRow& row : kExportRows) {
    EXPECT_GT(row.ordinal, last) << row.routine;
    EXPECT_LE(row.ordinal, 117) << row.routine;
    EXPECT_FALSE(unused.contains(row.ordinal)) << row.routine;
    last = row.ordinal;
  }
}

TEST(ExportTable, FailureIsMinusOneButForInitializeAndClear) {
  for (const ExportRow& row : kExportRows) {
    const std::string routine = row.routine;
    const bool zero = routine == "Initialize" || routine == "Clear" ||
                      routine == "CopyToClipboard";
    EXPECT_EQ(row.failure, zero ? 0 : -1) << routine;
  }
}

#ifdef _WIN32

const IMAGE_EXPORT_DIRECTORY& export_directory(HMODULE module) {
  auto* base = reinterpret_cast<const char*>(module);
  auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS32*>(base + dos->e_lfanew);
  return *reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(
      base + nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT]
                 .VirtualAddress);
}

HMODULE engine() { return GetModuleHandleA("ZenfoFR130.dll"); }

TEST(ExportDirectory, HoldsTheTablesOrdinalsAndNoNames) {
  HMODULE module = engine();
  ASSERT_NE(module, nullptr);
  const IMAGE_EXPORT_DIRECTORY& directory = export_directory(module);
  EXPECT_EQ(directory.NumberOfNames, 0u);
  auto* addresses = reinterpret_cast<const DWORD*>(
      reinterpret_cast<const char*>(module) + directory.AddressOfFunctions);
  std::set<int> exported;
  for (DWORD i = 0; i < directory.NumberOfFunctions; ++i) {
    if (addresses[i] != 0)
      exported.insert(static_cast<int>(directory.Base + i));
  }
  std::set<int> expected;
  for (const auto& [ordinal, routine] : expected_exports()) {
    expected.insert(ordinal);
  }
  EXPECT_EQ(exported, expected);
}

TEST(ExportDirectory, NamesTheModule) {
  const IMAGE_EXPORT_DIRECTORY& directory = export_directory(engine());
  EXPECT_STREQ(reinterpret_cast<const char*>(engine()) + directory.Name,
               "ZenfoFR130.dll");
}

// Calls the operation with `count` zero arguments and returns how many bytes
// the callee removed.
int removed_bytes(void* address, int count) {
  int removed = 0;
  // A frame pointer restores the stack whatever the callee removed.
  asm volatile(
      "pushl %%ebx\n\t"
      "movl %%esp, %%ebx\n\t"
      "movl %[count], %%ecx\n"
      "1:\n\t"
      "testl %%ecx, %%ecx\n\t"
      "jz 2f\n\t"
      "pushl $0\n\t"
      "decl %%ecx\n\t"
      "jmp 1b\n"
      "2:\n\t"
      "movl %%esp, %%edi\n\t"
      "call *%[address]\n\t"
      "subl %%esp, %%edi\n\t"
      "negl %%edi\n\t"
      "movl %%ebx, %%esp\n\t"
      "popl %%ebx\n\t"
      : "=&D"(removed)
      : [address] "S"(address), [count] "m"(count)
      : "eax", "ecx", "edx", "cc", "memory");
  return removed;
}

TEST(ExportDirectory, EveryCalleeRemovesExactlyItsArguments) {
  for (const ExportRow& row : kExportRows) {
    void* address = reinterpret_cast<void*>(
        GetProcAddress(engine(), MAKEINTRESOURCEA(row.ordinal)));
    ASSERT_NE(address, nullptr) << row.routine;
    EXPECT_EQ(removed_bytes(address, row.arguments), 4 * row.arguments)
        << row.routine;
  }
  Terminate();
}

TEST(ImportDirectory, NamesSystemLibrariesOnly) {
  const std::set<std::string> system = {
      "kernel32.dll", "msvcrt.dll", "advapi32.dll", "shell32.dll",
      "oleaut32.dll", "gdi32.dll",  "user32.dll"};
  auto* base = reinterpret_cast<const char*>(engine());
  auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS32*>(base + dos->e_lfanew);
  auto* row = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(
      base + nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT]
                 .VirtualAddress);
  int libraries = 0;
  for (; row->Name != 0; ++row, ++libraries) {
    std::string name = base + row->Name;
    for (char& c : name) c = static_cast<char>(std::tolower(c));
    EXPECT_TRUE(system.contains(name)) << name;
  }
  EXPECT_GT(libraries, 0);
}

#else

// The defined global functions of a shared object, from its symbol table.
std::set<std::string> defined_functions(const std::string& path) {
  const std::string image = read_file(path);
  Elf64_Ehdr header;
  std::memcpy(&header, image.data(), sizeof header);
  std::set<std::string> names;
  auto section = [&](unsigned index) {
    Elf64_Shdr row;
    std::memcpy(&row, image.data() + header.e_shoff + index * sizeof row,
                sizeof row);
    return row;
  };
  for (unsigned i = 0; i < header.e_shnum; ++i) {
    const Elf64_Shdr table = section(i);
    if (table.sh_type != SHT_DYNSYM) continue;
    const Elf64_Shdr strings = section(table.sh_link);
    for (size_t at = 0; at < table.sh_size; at += sizeof(Elf64_Sym)) {
      Elf64_Sym symbol;
      std::memcpy(&symbol, image.data() + table.sh_offset + at, sizeof symbol);
      if (symbol.st_shndx == SHN_UNDEF || symbol.st_shndx == SHN_ABS) continue;
      names.insert(image.data() + strings.sh_offset + symbol.st_name);
    }
  }
  return names;
}

TEST(SymbolTable, HoldsTheTablesRoutinesAndNothingElse) {
  std::set<std::string> expected;
  for (const auto& [ordinal, routine] : expected_exports()) {
    expected.insert(routine);
  }
  EXPECT_EQ(defined_functions(ZENFO_LIBRARY_PATH), expected);
}

#endif

}  // namespace
}  // namespace zenfo::test
