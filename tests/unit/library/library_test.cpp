#include "library/library.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "containers/record.h"
#include "files/file_entry.h"
#include "frame/callbacks.h"
#include "support/lists.h"
#include "support/temp_folder.h"
#include "zenfofr130.h"

namespace zenfo {
namespace {

constexpr int32_t kLists = 11;

TEST(Library, HasNoListsBeforeInitializeAndAfterTerminate) {
  Library library;
  for (int32_t n = 0; n < kLists; ++n) {
    EXPECT_EQ(library.get_list(n), nullptr);
  }
  EXPECT_FALSE(library.initialized());
  EXPECT_EQ(library.initialize(), 1);
  EXPECT_TRUE(library.initialized());
  EXPECT_EQ(library.terminate(), 1);
  for (int32_t n = 0; n < kLists; ++n) {
    EXPECT_EQ(library.get_list(n), nullptr);
  }
  EXPECT_FALSE(library.initialized());
  EXPECT_EQ(library.terminate(), 1);
}

TEST(Library, NumbersNameItsLists) {
  Library library;
  library.initialize();
  const ItemList* expected[kLists] = {library.other_files.get(),
                                      library.run_files.get(),
                                      library.pairs.get(),
                                      &library.safe_store->undo_list,
                                      library.results.get(),
                                      &library.find_context->matches,
                                      library.no_matches.get(),
                                      library.errors.get(),
                                      library.values.get(),
                                      &library.exclusion_context->matches,
                                      &library.replace_context->matches};
  for (int32_t n = 0; n < kLists; ++n) {
    EXPECT_EQ(library.get_list(n), expected[n]) << n;
    EXPECT_NE(library.get_list(n), nullptr) << n;
  }
  library.terminate();
}

TEST(Library, NumbersNameItsContexts) {
  Library library;
  EXPECT_EQ(library.get_context(ZENFO_LIST_MATCHES), nullptr);
  library.initialize();
  EXPECT_EQ(library.get_context(ZENFO_LIST_MATCHES),
            library.find_context.get());
  EXPECT_EQ(library.get_context(ZENFO_LIST_EXCLUDED),
            library.exclusion_context.get());
  EXPECT_EQ(library.get_context(ZENFO_LIST_REPLACE_MATCHES),
            library.replace_context.get());
  constexpr int32_t kOthers[] = {-1, ZENFO_LIST_UNDO, ZENFO_LIST_VALUES,
                                 test::kNoList};
  for (int32_t n : kOthers) {
    EXPECT_EQ(library.get_context(n), nullptr) << n;
  }
  for (int32_t n : test::kFileLists) {
    EXPECT_EQ(library.get_context(n), nullptr) << n;
  }
  library.terminate();
}

TEST(Library, AnUnknownNumberIsLoggedAndAMissingListIsNot) {
  test::TempFolder folder;
  const std::string path = folder.path("errors");
  Library library;
  library.initialize();
  library.error_log->set_file(path.c_str());
  library.pairs.reset();
  library.find_context.reset();
  EXPECT_EQ(library.get_list(ZENFO_LIST_PAIRS), nullptr);
  EXPECT_EQ(library.get_list(ZENFO_LIST_MATCHES), nullptr);
  EXPECT_FALSE(test::file_exists(path));
  EXPECT_EQ(library.get_list(test::kNoList), nullptr);
  const std::string bytes = test::read_file(path);
  EXPECT_NE(bytes.find("message  : \r\n"), std::string::npos);
  EXPECT_NE(bytes.find("context  : Error retrieving list handler\r\n"),
            std::string::npos);
  EXPECT_NE(bytes.find("routine  : get_list\r\n"), std::string::npos);
  library.terminate();
}

TEST(Library, EveryListHasTheHostsHooks) {
  Library library;
  library.initialize();
  for (int32_t n = 0; n < kLists; ++n) {
    EXPECT_EQ(library.get_list(n)->interrupt_hook(), &interr) << n;
    EXPECT_EQ(library.get_list(n)->report_hook(), &report) << n;
  }
  EXPECT_EQ(library.display->interrupt_hook(), &interr);
  EXPECT_EQ(library.display->report_hook(), &report);
  library.terminate();
}

TEST(Library, TerminateDestroysTheRecords) {
  struct Counted final : Record {
    explicit Counted(int& living) : living_(living) { ++living_; }
    ~Counted() override { --living_; }
    RecordKind kind() const override { return RecordKind::kFileEntry; }
    int& living_;
  };
  int living = 0;
  Library library;
  library.initialize();
  for (int32_t n = 0; n < kLists; ++n) {
    library.get_list(n)->append(std::make_unique<Counted>(living));
  }
  EXPECT_EQ(living, kLists);
  library.initialize();
  EXPECT_EQ(living, 0);
  for (int32_t n = 0; n < kLists; ++n) {
    EXPECT_EQ(library.get_list(n)->count(), 0u) << n;
  }
  library.terminate();
}

TEST(Library, IsOnePerProcess) { EXPECT_EQ(&library(), &library()); }

}  // namespace
}  // namespace zenfo
