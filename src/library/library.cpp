#include "library/library.h"

#include "frame/callbacks.h"
#include "frame/guard.h"

namespace zenfo {
namespace {

// Leaves null when the creation fails.
template <class T>
void create(std::unique_ptr<T>& object) {
  unlogged(0, [&] {
    object = std::make_unique<T>();
    return 1;
  });
}

template <class T>
void create_hooked(std::unique_ptr<T>& object) {
  create(object);
  if (object == nullptr) return;
  object->set_interrupt_hook(interr);
  object->set_report_hook(report);
}

ItemList* matches_of(const std::unique_ptr<PatternContext>& context) {
  return context != nullptr ? &context->matches : nullptr;
}

}  // namespace

int32_t Library::initialize() {
  terminate();
  create_hooked(other_files);
  create_hooked(run_files);
  create_hooked(results);
  create_hooked(no_matches);
  create_hooked(errors);
  create_hooked(pairs);
  create_hooked(values);
  create_hooked(find_context);
  create_hooked(exclusion_context);
  create_hooked(replace_context);
  create_hooked(safe_store);
  create(error_log);
  install_error_log(error_log.get());
  create_hooked(display);
  allocate_shared_wide_buffer();
  return 1;
}

int32_t Library::terminate() {
  other_files.reset();
  run_files.reset();
  results.reset();
  no_matches.reset();
  errors.reset();
  pairs.reset();
  values.reset();
  find_context.reset();
  exclusion_context.reset();
  replace_context.reset();
  safe_store.reset();
  install_error_log(nullptr);
  error_log.reset();
  display.reset();
  counted_content.reset();
  counting_context.reset();
  free_shared_wide_buffer();
  return 1;
}

bool Library::complete() const {
  return other_files != nullptr && run_files != nullptr && results != nullptr &&
         no_matches != nullptr && errors != nullptr && pairs != nullptr &&
         values != nullptr && find_context != nullptr &&
         exclusion_context != nullptr && replace_context != nullptr &&
         safe_store != nullptr && display != nullptr;
}

ItemList* Library::get_list(int32_t number) {
  switch (number) {
    case ZENFO_LIST_OTHER_FILES:
      return other_files.get();
    case ZENFO_LIST_RUN_FILES:
      return run_files.get();
    case ZENFO_LIST_PAIRS:
      return pairs.get();
    case ZENFO_LIST_UNDO:
      return safe_store != nullptr ? &safe_store->undo_list : nullptr;
    case ZENFO_LIST_RESULT:
      return results.get();
    case ZENFO_LIST_MATCHES:
      return matches_of(find_context);
    case ZENFO_LIST_NO_MATCH:
      return no_matches.get();
    case ZENFO_LIST_ERROR:
      return errors.get();
    case ZENFO_LIST_VALUES:
      return values.get();
    case ZENFO_LIST_EXCLUDED:
      return matches_of(exclusion_context);
    case ZENFO_LIST_REPLACE_MATCHES:
      return matches_of(replace_context);
    default:
      report_error("", "Error retrieving list handler", "get_list");
      return nullptr;
  }
}

PatternContext* Library::get_context(int32_t number) {
  switch (number) {
    case ZENFO_LIST_MATCHES:
      return find_context.get();
    case ZENFO_LIST_EXCLUDED:
      return exclusion_context.get();
    case ZENFO_LIST_REPLACE_MATCHES:
      return replace_context.get();
    default:
      return nullptr;
  }
}

Library& library() {
  // Never destroyed: no destructor may touch the lists while the process ends.
  static Library& only = *new Library;
  return only;
}

}  // namespace zenfo
