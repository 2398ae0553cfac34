#include "operations/operation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "support/error_records.h"
#include "support/temp_folder.h"

namespace zenfo {
namespace {

using ::testing::ElementsAre;

class OperationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(Initialize(), 1);
    ASSERT_EQ(SetErrorFile(log_.c_str()), 1);
  }
  void TearDown() override { Terminate(); }

  test::TempFolder folder_;
  std::string log_ = folder_.path("errors");
};

TEST_F(OperationTest, WorksOnTheOneLibraryAndAnswersWhatItsStepsDo) {
  const Library* seen = nullptr;
  const int32_t answer = run<row::GetState>([&](Library& given) {
    seen = &given;
    return 7;
  });
  EXPECT_EQ(answer, 7);
  EXPECT_EQ(seen, &library());
}

TEST_F(OperationTest, AnswersTheFailureOfItsRowForAFault) {
  const auto fault = [](Library&) -> int32_t { throw std::runtime_error(""); };
  EXPECT_EQ(run<row::Clear>(fault), 0);
  EXPECT_EQ(run<row::Sort>(fault), -1);
  EXPECT_THAT(
      test::read_error_records(log_),
      ElementsAre(test::runtime_error("Clear"), test::runtime_error("Sort")));
}

TEST_F(OperationTest, RefusesInTheNameOfItsRow) {
  EXPECT_EQ(refuse(row::Sort, "Option is invalid", "Checking sort option"), -1);
  EXPECT_THAT(test::read_error_records(log_),
              ElementsAre(test::ErrorRecord{"Option is invalid",
                                            "Checking sort option", "Sort"}));
}

}  // namespace
}  // namespace zenfo
