// The exported operations: one line each, no logic. Prototypes and their
// documentation are in zenfofr130.h, rows in exports.inc.
//
// Tested by tests/contract/exports_test.cpp
#include <cstdint>
#include <type_traits>

#include "display/display_ops.h"
#include "files/entry_ops.h"
#include "files/find_ops.h"
#include "files/list_file_ops.h"
#include "frame/frame_ops.h"
#include "frame/guard.h"
#include "frame/library.h"
#include "frame/rows.h"
#include "listops/compare_ops.h"
#include "listops/pair_ops.h"
#include "listops/sort_ops.h"
#include "pattern/pattern_ops.h"
#include "replace/case_ops.h"
#include "replace/replace_ops.h"
#include "search/match_ops.h"
#include "search/search_ops.h"
#include "stats/stats_ops.h"
#include "undo/undo_ops.h"
#include "zenfofr130.h"

namespace {

using zenfo::guarded;
using zenfo::library;
namespace row = zenfo::row;

// Runs an operation in the error frame of its row.
template <const zenfo::ExportRow& kRow, class Operation, class... Arguments>
int32_t run(Operation operation, Arguments... arguments) {
  return guarded(kRow, [&] { return operation(library(), arguments...); });
}

template <class Result, class... Arguments>
constexpr bool fits(Result(ZENFO_CALL*)(Arguments...), int arguments) {
  // On the 32-bit target every argument and result is one 32-bit word.
  constexpr bool words =
      sizeof(void*) != 4 || ((sizeof(Arguments) == 4) && ... && true);
  return words && sizeof...(Arguments) == static_cast<size_t>(arguments);
}

zenfo::PatternText pattern_text(const char* text, int32_t is_pattern,
                                int32_t convert) {
  return {text, is_pattern != 0, convert != 0};
}

// Every row has a prototype with its number of arguments.
#define ZENFO_EXPORT(ordinal, routine, arguments, failure, log, access) \
  static_assert(fits(&::routine, arguments), #routine);
#include "frame/exports.inc"
#undef ZENFO_EXPORT

}  // namespace

extern "C" {

#define ZENFO_ENTRY ZENFO_API int32_t ZENFO_CALL

ZENFO_ENTRY Initialize() { return run<row::Initialize>(zenfo::initialize); }

ZENFO_ENTRY Terminate() { return run<row::Terminate>(zenfo::terminate); }

ZENFO_ENTRY FindFiles(int32_t list, const char* specification,
                      const unsigned char* options, const char* output_file) {
  return run<row::FindFiles>(zenfo::find_files, list, specification, options,
                             output_file);
}

ZENFO_ENTRY AddFileToList(int32_t source, int32_t target,
                          const unsigned char* options) {
  return run<row::AddFileToList>(zenfo::add_file_to_list, source, target,
                                 options);
}

ZENFO_ENTRY LoadFileList(const char* file, const unsigned char* options) {
  return run<row::LoadFileList>(zenfo::load_file_list, file, options);
}

ZENFO_ENTRY SaveFileList(const char* file) {
  return run<row::SaveFileList>(zenfo::save_file_list, file);
}

ZENFO_ENTRY SaveResultFileList(int32_t list, const char* file,
                               int32_t flagged) {
  return run<row::SaveResultFileList>(zenfo::save_result_file_list, list, file,
                                      flagged);
}

ZENFO_ENTRY RemoveSelection(int32_t list) {
  return run<row::RemoveSelection>(zenfo::remove_selection, list);
}

ZENFO_ENTRY Sort(int32_t list, uint32_t option, int32_t descending) {
  return run<row::Sort>(zenfo::sort, list, option, descending);
}

ZENFO_ENTRY SortResult(uint32_t option, int32_t descending) {
  return run<row::SortResult>(zenfo::sort_result, option, descending);
}

ZENFO_ENTRY GetFilename(int32_t list, uint32_t index, char* buffer,
                        uint32_t size) {
  return run<row::GetFilename>(zenfo::get_filename, list, index, buffer, size);
}

ZENFO_ENTRY GetFullName(int32_t list, uint32_t index, char* buffer,
                        uint32_t size) {
  return run<row::GetFullName>(zenfo::get_full_name, list, index, buffer, size);
}

ZENFO_ENTRY SetFullName(int32_t list, uint32_t index, const char* text) {
  return run<row::SetFullName>(zenfo::set_full_name, list, index, text);
}

ZENFO_ENTRY GetDirectory(int32_t list, uint32_t index, char* buffer,
                         uint32_t size) {
  return run<row::GetDirectory>(zenfo::get_directory, list, index, buffer,
                                size);
}

ZENFO_ENTRY GetType(int32_t list, uint32_t index, char* buffer, uint32_t size) {
  return run<row::GetType>(zenfo::get_type, list, index, buffer, size);
}

ZENFO_ENTRY GetCTime(int32_t list, uint32_t index, char* buffer,
                     uint32_t size) {
  return run<row::GetCTime>(zenfo::get_ctime, list, index, buffer, size);
}

ZENFO_ENTRY GetATime(int32_t list, uint32_t index, char* buffer,
                     uint32_t size) {
  return run<row::GetATime>(zenfo::get_atime, list, index, buffer, size);
}

ZENFO_ENTRY GetMTime(int32_t list, uint32_t index, char* buffer,
                     uint32_t size) {
  return run<row::GetMTime>(zenfo::get_mtime, list, index, buffer, size);
}

ZENFO_ENTRY GetSize(int32_t list, uint32_t index, char* buffer, uint32_t size) {
  return run<row::GetSize>(zenfo::get_size, list, index, buffer, size);
}

ZENFO_ENTRY GetAttributes(int32_t list, uint32_t index, char* buffer,
                          uint32_t size) {
  return run<row::GetAttributes>(zenfo::get_attributes, list, index, buffer,
                                 size);
}

ZENFO_API void ZENFO_CALL SetCallBacks(const CallbackTable* table) {
  run<row::SetCallBacks>(zenfo::set_callbacks, table);
}

ZENFO_ENTRY SetState(int32_t list, int32_t index, int32_t action) {
  return run<row::SetState>(zenfo::set_state, list, index, action);
}

ZENFO_ENTRY GetState(int32_t list, uint32_t index) {
  return run<row::GetState>(zenfo::get_state, list, index);
}

ZENFO_ENTRY GetFlag(int32_t list, uint32_t index) {
  return run<row::GetFlag>(zenfo::get_flag, list, index);
}

ZENFO_ENTRY IsTrashed(int32_t list, uint32_t index) {
  return run<row::IsTrashed>(zenfo::is_trashed, list, index);
}

ZENFO_ENTRY GetCount(int32_t list, int32_t selector) {
  return run<row::GetCount>(zenfo::get_count, list, selector);
}

ZENFO_ENTRY GetFileFlagCount(int32_t list, int32_t value) {
  return run<row::GetFileFlagCount>(zenfo::get_file_flag_count, list, value);
}

ZENFO_ENTRY Clear(int32_t list) { return run<row::Clear>(zenfo::clear, list); }

ZENFO_ENTRY Refresh(int32_t list, int32_t index, const unsigned char* options) {
  return run<row::Refresh>(zenfo::refresh, list, index, options);
}

ZENFO_ENTRY SelectDuplicates(int32_t list, uint32_t option) {
  return run<row::SelectDuplicates>(zenfo::select_duplicates, list, option);
}

ZENFO_ENTRY SaveSelection(int32_t list, const char* file, const char* separator,
                          const unsigned char* columns) {
  return run<row::SaveSelection>(zenfo::save_selection, list, file, separator,
                                 columns);
}

ZENFO_ENTRY GetSizeSelection(int32_t list, char* short_text, char* long_text) {
  return run<row::GetSizeSelection>(zenfo::get_size_selection, list, short_text,
                                    long_text);
}

ZENFO_ENTRY GetSizeTotal(int32_t list, char* short_text, char* long_text) {
  return run<row::GetSizeTotal>(zenfo::get_size_total, list, short_text,
                                long_text);
}

ZENFO_ENTRY FindInList(int32_t list, uint32_t field, const char* text,
                       uint32_t whole_word, uint32_t case_sensitive,
                       uint32_t start, int32_t position, uint32_t first_only,
                       int32_t select) {
  return run<row::FindInList>(zenfo::find_in_list, list, field, text,
                              whole_word, case_sensitive, start, position,
                              first_only, select);
}

ZENFO_ENTRY CompareLists(uint32_t option, int32_t keep) {
  return run<row::CompareLists>(zenfo::compare_lists, option, keep);
}

ZENFO_ENTRY FindInFiles(int32_t list, const char* text, int32_t clear_selection,
                        int32_t whole_word, int32_t case_sensitive) {
  return run<row::FindInFiles>(zenfo::find_in_files, list, text,
                               clear_selection, whole_word, case_sensitive);
}

ZENFO_ENTRY DeleteItem(int32_t list, uint32_t index) {
  return run<row::DeleteItem>(zenfo::delete_item, list, index);
}

ZENFO_ENTRY GetIcon(int32_t list, uint32_t index, int32_t* image_list,
                    int32_t* icon) {
  return run<row::GetIcon>(zenfo::get_icon, list, index, image_list, icon);
}

ZENFO_ENTRY CopyToClipboard() {
  return run<row::CopyToClipboard>(zenfo::copy_to_clipboard);
}

ZENFO_ENTRY AddStringPair(const char* find, const char* replace) {
  return run<row::AddStringPair>(zenfo::add_string_pair, find, replace);
}

ZENFO_ENTRY UpdateStringPair(uint32_t index, const char* find,
                             const char* replace) {
  return run<row::UpdateStringPair>(zenfo::update_string_pair, index, find,
                                    replace);
}

ZENFO_ENTRY LoadStringPair(const char* file) {
  return run<row::LoadStringPair>(zenfo::load_string_pair, file);
}

ZENFO_ENTRY SaveStringPair(const char* file, int32_t selected_only) {
  return run<row::SaveStringPair>(zenfo::save_string_pair, file, selected_only);
}

ZENFO_ENTRY GetFindString(uint32_t index, char* buffer, uint32_t size) {
  return run<row::GetFindString>(zenfo::get_find_string, index, buffer, size);
}

ZENFO_ENTRY GetReplaceString(uint32_t index, char* buffer, uint32_t size) {
  return run<row::GetReplaceString>(zenfo::get_replace_string, index, buffer,
                                    size);
}

ZENFO_ENTRY SortString(uint32_t option, int32_t descending) {
  return run<row::SortString>(zenfo::sort_string, option, descending);
}

ZENFO_ENTRY SetPatternTag(const char* first, const char* second,
                          int32_t count_start, int32_t is_pattern,
                          int32_t convert) {
  return run<row::SetPatternTag>(zenfo::set_pattern_tag, first, second,
                                 count_start, is_pattern, convert);
}

ZENFO_ENTRY FindBlock(int32_t case_flag, int32_t whole_words,
                      int32_t binary_check, const char* report,
                      int32_t ask_user, int32_t display) {
  return run<row::FindBlock>(zenfo::find_block, case_flag, whole_words,
                             binary_check, report, ask_user, display);
}

ZENFO_ENTRY FindString(int32_t case_flag, int32_t whole_words,
                       int32_t binary_check, const char* report,
                       int32_t is_pattern, int32_t convert, int32_t ask_user,
                       int32_t display) {
  return run<row::FindString>(zenfo::find_string, case_flag, whole_words,
                              binary_check, report, is_pattern, convert,
                              ask_user, display);
}

ZENFO_ENTRY ReplaceBlock(const char* text, int32_t case_flag,
                         int32_t whole_words, int32_t binary_check,
                         int32_t ask_user, int32_t safe_store,
                         int32_t edit_mode, int32_t use_list,
                         int32_t use_pattern, int32_t match_index,
                         int32_t display, int32_t expand) {
  return run<row::ReplaceBlock>(
      zenfo::replace_block,
      zenfo::ReplaceArguments{case_flag, whole_words, binary_check, ask_user,
                              safe_store, display},
      zenfo::BlockReplacement{text, edit_mode, use_list, use_pattern,
                              match_index, expand});
}

ZENFO_ENTRY ReplaceString(int32_t case_flag, int32_t whole_words,
                          int32_t binary_check, int32_t is_pattern,
                          int32_t convert, int32_t ask_user, int32_t safe_store,
                          int32_t display) {
  return run<row::ReplaceString>(
      zenfo::replace_string,
      zenfo::ReplaceArguments{case_flag, whole_words, binary_check, ask_user,
                              safe_store, display},
      zenfo::StringCompilation{is_pattern, convert});
}

ZENFO_ENTRY ReplaceBlockNbr(const char* text, int32_t case_flag,
                            int32_t whole_words, int32_t binary_check,
                            int32_t ask_user, int32_t safe_store,
                            int32_t edit_mode, int32_t use_list,
                            int32_t use_pattern, int32_t match_index,
                            int32_t display, int32_t expand,
                            const char* placeholder, int32_t first,
                            int32_t step, int32_t run_on) {
  return run<row::ReplaceBlockNbr>(
      zenfo::replace_block_nbr,
      zenfo::ReplaceArguments{case_flag, whole_words, binary_check, ask_user,
                              safe_store, display},
      zenfo::BlockReplacement{text, edit_mode, use_list, use_pattern,
                              match_index, expand},
      zenfo::Numbering{placeholder, first, step, run_on});
}

ZENFO_ENTRY ReplaceStringNbr(int32_t case_flag, int32_t whole_words,
                             int32_t binary_check, int32_t is_pattern,
                             int32_t convert, int32_t ask_user,
                             int32_t safe_store, int32_t display,
                             const char* placeholder, int32_t first,
                             int32_t step, int32_t run_on) {
  return run<row::ReplaceStringNbr>(
      zenfo::replace_string_nbr,
      zenfo::ReplaceArguments{case_flag, whole_words, binary_check, ask_user,
                              safe_store, display},
      zenfo::StringCompilation{is_pattern, convert},
      zenfo::Numbering{placeholder, first, step, run_on});
}

ZENFO_ENTRY Undo() { return run<row::Undo>(zenfo::undo); }

ZENFO_ENTRY SetUndoFile(const char* file) {
  return run<row::SetUndoFile>(zenfo::set_undo_file, file);
}

ZENFO_ENTRY SortUndo(uint32_t option, int32_t descending) {
  return run<row::SortUndo>(zenfo::sort_undo, option, descending);
}

ZENFO_ENTRY SetErrorFile(const char* name) {
  return run<row::SetErrorFile>(zenfo::set_error_file, name);
}

ZENFO_ENTRY GetOrigFile(uint32_t index, char* buffer, uint32_t size) {
  return run<row::GetOrigFile>(zenfo::get_orig_file, index, buffer, size);
}

ZENFO_ENTRY GetSafeFile(uint32_t index, char* buffer, uint32_t size) {
  return run<row::GetSafeFile>(zenfo::get_safe_file, index, buffer, size);
}

ZENFO_ENTRY GetSafeTime(uint32_t index, char* buffer, uint32_t size) {
  return run<row::GetSafeTime>(zenfo::get_safe_time, index, buffer, size);
}

ZENFO_ENTRY GetUndoList() {
  return run<row::GetUndoList>(zenfo::get_undo_list);
}

ZENFO_ENTRY ClearUndoList() {
  return run<row::ClearUndoList>(zenfo::clear_undo_list);
}

ZENFO_ENTRY SetExclusionPattern(const char* start, const char* main,
                                const char* end, int32_t start_is_pattern,
                                int32_t main_is_pattern, int32_t end_is_pattern,
                                int32_t convert_start, int32_t convert_main,
                                int32_t convert_end) {
  return run<row::SetExclusionPattern>(
      zenfo::set_exclusion_pattern,
      pattern_text(start, start_is_pattern, convert_start),
      pattern_text(main, main_is_pattern, convert_main),
      pattern_text(end, end_is_pattern, convert_end));
}

ZENFO_ENTRY FindExcludedArea(int32_t case_flag, int32_t whole_words,
                             int32_t binary_check, const char* report) {
  return run<row::FindExcludedArea>(zenfo::find_excluded_area, case_flag,
                                    whole_words, binary_check, report);
}

ZENFO_ENTRY SetPattern(const char* start, const char* main, const char* end,
                       int32_t start_is_pattern, int32_t main_is_pattern,
                       int32_t end_is_pattern, int32_t convert_start,
                       int32_t convert_main, int32_t convert_end) {
  return run<row::SetPattern>(
      zenfo::set_pattern, pattern_text(start, start_is_pattern, convert_start),
      pattern_text(main, main_is_pattern, convert_main),
      pattern_text(end, end_is_pattern, convert_end));
}

ZENFO_ENTRY GetMatchOffset(int32_t list, uint32_t index, char* buffer,
                           uint32_t size) {
  return run<row::GetMatchOffset>(zenfo::get_match_offset, list, index, buffer,
                                  size);
}

ZENFO_ENTRY GetMatchLength(int32_t list, uint32_t index, char* buffer,
                           uint32_t size) {
  return run<row::GetMatchLength>(zenfo::get_match_length, list, index, buffer,
                                  size);
}

ZENFO_ENTRY GetMatchText(int32_t list, uint32_t index, char* buffer,
                         uint32_t size) {
  return run<row::GetMatchText>(zenfo::get_match_text, list, index, buffer,
                                size);
}

ZENFO_ENTRY GetDisplayLineCount() {
  return run<row::GetDisplayLineCount>(zenfo::get_display_line_count);
}

ZENFO_ENTRY GetDisplayWidth() {
  return run<row::GetDisplayWidth>(zenfo::get_display_width);
}

ZENFO_ENTRY GetDisplayTopLine() {
  return run<row::GetDisplayTopLine>(zenfo::get_display_top_line);
}

ZENFO_ENTRY HighlightGroup(uint32_t group, int32_t position[2]) {
  return run<row::HighlightGroup>(zenfo::highlight_group, group, position);
}

ZENFO_ENTRY PaintDisplay(uint32_t top_line, uint32_t left_column,
                         int32_t line_numbers, int32_t fixed_font) {
  return run<row::PaintDisplay>(zenfo::paint_display, top_line, left_column,
                                line_numbers, fixed_font);
}

ZENFO_ENTRY GetDisplayPageLines() {
  return run<row::GetDisplayPageLines>(zenfo::get_display_page_lines);
}

ZENFO_ENTRY GetDisplayLeftColumn() {
  return run<row::GetDisplayLeftColumn>(zenfo::get_display_left_column);
}

ZENFO_ENTRY HitTestDisplay(int32_t x, int32_t y) {
  return run<row::HitTestDisplay>(zenfo::hit_test_display, x, y);
}

ZENFO_ENTRY RepaintDisplay(uint32_t unused, int32_t line_numbers,
                           int32_t fixed_font) {
  return run<row::RepaintDisplay>(zenfo::repaint_display, unused, line_numbers,
                                  fixed_font);
}

ZENFO_ENTRY PrepareDisplay(const char* separator, int32_t mode) {
  return run<row::PrepareDisplay>(zenfo::prepare_display, separator, mode);
}

ZENFO_ENTRY ClearHighlight() {
  return run<row::ClearHighlight>(zenfo::clear_highlight);
}

ZENFO_ENTRY ReplaceBlock_f(const char* text, int32_t case_flag,
                           int32_t whole_words, int32_t binary_check,
                           int32_t ask_user, int32_t safe_store,
                           const char* list_file, const char* summary,
                           int32_t edit_mode, int32_t use_list,
                           int32_t use_pattern, int32_t match_index,
                           int32_t display, int32_t expand) {
  return run<row::ReplaceBlock_f>(
      zenfo::replace_block_f,
      zenfo::ReplaceArguments{case_flag, whole_words, binary_check, ask_user,
                              safe_store, display},
      zenfo::BlockReplacement{text, edit_mode, use_list, use_pattern,
                              match_index, expand},
      zenfo::LineFiles{list_file, summary});
}

ZENFO_ENTRY ReplaceBlockNbr_f(const char* text, int32_t case_flag,
                              int32_t whole_words, int32_t binary_check,
                              int32_t ask_user, int32_t safe_store,
                              const char* list_file, const char* summary,
                              int32_t edit_mode, int32_t use_list,
                              int32_t use_pattern, int32_t match_index,
                              int32_t display, int32_t expand,
                              const char* placeholder, int32_t first,
                              int32_t step, int32_t run_on) {
  return run<row::ReplaceBlockNbr_f>(
      zenfo::replace_block_nbr_f,
      zenfo::ReplaceArguments{case_flag, whole_words, binary_check, ask_user,
                              safe_store, display},
      zenfo::BlockReplacement{text, edit_mode, use_list, use_pattern,
                              match_index, expand},
      zenfo::Numbering{placeholder, first, step, run_on},
      zenfo::LineFiles{list_file, summary});
}

ZENFO_ENTRY ReplaceString_f(int32_t case_flag, int32_t whole_words,
                            int32_t binary_check, int32_t is_pattern,
                            int32_t convert, int32_t ask_user,
                            int32_t safe_store, const char* list_file,
                            const char* summary, int32_t display) {
  return run<row::ReplaceString_f>(
      zenfo::replace_string_f,
      zenfo::ReplaceArguments{case_flag, whole_words, binary_check, ask_user,
                              safe_store, display},
      zenfo::StringCompilation{is_pattern, convert},
      zenfo::LineFiles{list_file, summary});
}

ZENFO_ENTRY ReplaceStringNbr_f(int32_t case_flag, int32_t whole_words,
                               int32_t binary_check, int32_t is_pattern,
                               int32_t convert, int32_t ask_user,
                               int32_t safe_store, const char* list_file,
                               const char* summary, int32_t display,
                               const char* placeholder, int32_t first,
                               int32_t step, int32_t run_on) {
  return run<row::ReplaceStringNbr_f>(
      zenfo::replace_string_nbr_f,
      zenfo::ReplaceArguments{case_flag, whole_words, binary_check, ask_user,
                              safe_store, display},
      zenfo::StringCompilation{is_pattern, convert},
      zenfo::Numbering{placeholder, first, step, run_on},
      zenfo::LineFiles{list_file, summary});
}

ZENFO_ENTRY FindBlock_f(int32_t case_flag, int32_t whole_words,
                        int32_t binary_check, const char* report,
                        int32_t ask_user, const char* list_file,
                        const char* summary, int32_t display) {
  return run<row::FindBlock_f>(zenfo::find_block_f, case_flag, whole_words,
                               binary_check, report, ask_user, list_file,
                               summary, display);
}

ZENFO_ENTRY FindString_f(int32_t case_flag, int32_t whole_words,
                         int32_t binary_check, const char* report,
                         int32_t is_pattern, int32_t convert, int32_t ask_user,
                         const char* list_file, const char* summary,
                         int32_t display) {
  return run<row::FindString_f>(zenfo::find_string_f, case_flag, whole_words,
                                binary_check, report, is_pattern, convert,
                                ask_user, list_file, summary, display);
}

ZENFO_ENTRY SortResultNoMatch(uint32_t option, int32_t descending) {
  return run<row::SortResultNoMatch>(zenfo::sort_result_no_match, option,
                                     descending);
}

ZENFO_ENTRY SortResultError(uint32_t option, int32_t descending) {
  return run<row::SortResultError>(zenfo::sort_result_error, option,
                                   descending);
}

ZENFO_ENTRY MarkGroups(uint32_t group, int32_t action) {
  return run<row::MarkGroups>(zenfo::mark_groups, group, action);
}

ZENFO_ENTRY set_operators(const char* file) {
  return run<row::set_operators>(zenfo::set_operators, file);
}

ZENFO_ENTRY change_case_i(int32_t case_flag, int32_t whole_words,
                          int32_t binary_check, int32_t ask_user,
                          int32_t safe_store, int32_t upper, int32_t display) {
  return run<row::change_case_i>(zenfo::change_case_i, case_flag, whole_words,
                                 binary_check, ask_user, safe_store, upper,
                                 display);
}

ZENFO_ENTRY change_case_f(int32_t case_flag, int32_t whole_words,
                          int32_t binary_check, int32_t ask_user,
                          int32_t safe_store, const char* list_file,
                          const char* summary, int32_t upper, int32_t display) {
  return run<row::change_case_f>(zenfo::change_case_f, case_flag, whole_words,
                                 binary_check, ask_user, safe_store, list_file,
                                 summary, upper, display);
}

ZENFO_ENTRY save_replace_list(const char* file) {
  return run<row::save_replace_list>(zenfo::save_replace_list, file);
}

ZENFO_ENTRY get_replace_value(uint32_t index, char* buffer, uint32_t size) {
  return run<row::get_replace_value>(zenfo::get_replace_value, index, buffer,
                                     size);
}

ZENFO_ENTRY sort_replace_list(uint32_t option, int32_t descending) {
  return run<row::sort_replace_list>(zenfo::sort_replace_list, option,
                                     descending);
}

ZENFO_ENTRY set_replace_pattern(const char* start, const char* main,
                                const char* end, int32_t start_is_pattern,
                                int32_t main_is_pattern, int32_t end_is_pattern,
                                int32_t convert_start, int32_t convert_main,
                                int32_t convert_end) {
  return run<row::set_replace_pattern>(
      zenfo::set_replace_pattern,
      pattern_text(start, start_is_pattern, convert_start),
      pattern_text(main, main_is_pattern, convert_main),
      pattern_text(end, end_is_pattern, convert_end));
}

ZENFO_ENTRY GetMatchReplace(int32_t list, uint32_t index, char* buffer,
                            uint32_t size) {
  return run<row::GetMatchReplace>(zenfo::get_match_replace, list, index,
                                   buffer, size);
}

ZENFO_ENTRY get_match_flag(int32_t list, uint32_t index) {
  return run<row::get_match_flag>(zenfo::get_match_flag, list, index);
}

ZENFO_ENTRY ResetDisplay() {
  return run<row::ResetDisplay>(zenfo::reset_display);
}

ZENFO_ENTRY SetBytesPerLine(uint32_t bytes) {
  return run<row::SetBytesPerLine>(zenfo::set_bytes_per_line, bytes);
}

ZENFO_ENTRY GetBytesPerLine() {
  return run<row::GetBytesPerLine>(zenfo::get_bytes_per_line);
}

ZENFO_ENTRY get_word_count(const char* file, TextCounts* counts) {
  return run<row::get_word_count>(zenfo::get_word_count, file, counts);
}

ZENFO_ENTRY save_occurrences(const char* file, const char* separator) {
  return run<row::save_occurrences>(zenfo::save_occurrences, file, separator);
}

ZENFO_ENTRY SetDisplayWindow(void* window) {
  return run<row::SetDisplayWindow>(zenfo::set_display_window, window);
}

ZENFO_ENTRY GetDisplayScrollPos(int32_t* vertical, int32_t* horizontal) {
  return run<row::GetDisplayScrollPos>(zenfo::get_display_scroll_pos, vertical,
                                       horizontal);
}

ZENFO_ENTRY GetDisplayScrollTrackPos(int32_t* vertical, int32_t* horizontal) {
  return run<row::GetDisplayScrollTrackPos>(zenfo::get_display_scroll_track_pos,
                                            vertical, horizontal);
}

ZENFO_ENTRY load_replace_list(const char* file) {
  return run<row::load_replace_list>(zenfo::load_replace_list, file);
}

ZENFO_ENTRY GetLineSeparator(char* buffer, uint32_t size) {
  return run<row::GetLineSeparator>(zenfo::get_line_separator, buffer, size);
}

}  // extern "C"
