// A test with an initialised library, a folder and an error file; helpers to
// fill lists and to read them through the interface.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "support/error_records.h"
#include "support/temp_folder.h"
#include "zenfofr130.h"

namespace zenfo::test {

using Texts = std::vector<std::string>;

class ListTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(Initialize(), 1);
    ASSERT_EQ(SetErrorFile(error_file().c_str()), 1);
  }
  void TearDown() override { Terminate(); }

  std::string error_file() const { return errors_.path("errors.txt"); }
  // The records since the last call.
  std::vector<ErrorRecord> errors() const {
    auto records = read_error_records(error_file());
    std::error_code ignored;
    std::filesystem::remove(error_file(), ignored);
    return records;
  }

  using Getter = int32_t(ZENFO_CALL*)(int32_t, uint32_t, char*, uint32_t);
  using FixedGetter = int32_t(ZENFO_CALL*)(uint32_t, char*, uint32_t);

  // The texts of a list by position; "(-1)" where there is none.
  static Texts texts(Getter getter, int32_t list) {
    return texts_of(GetCount(list, -1), [&](uint32_t i, char* buffer) {
      return getter(list, i, buffer, kBuffer);
    });
  }
  static Texts texts(FixedGetter getter, int32_t list) {
    return texts_of(GetCount(list, -1), [&](uint32_t i, char* buffer) {
      return getter(i, buffer, kBuffer);
    });
  }
  static std::vector<int> states(int32_t list) {
    std::vector<int> all;
    for (int32_t i = 0; i < GetCount(list, -1); ++i) {
      all.push_back(GetState(list, static_cast<uint32_t>(i)));
    }
    return all;
  }
  static std::vector<int> flags(int32_t list) {
    std::vector<int> all;
    for (int32_t i = 0; i < GetCount(list, -1); ++i) {
      all.push_back(GetFlag(list, static_cast<uint32_t>(i)));
    }
    return all;
  }

  // The texts as lines that end in CR LF.
  static std::string lines(const Texts& texts) {
    std::string all;
    for (const std::string& text : texts) all += text + "\r\n";
    return all;
  }

  TempFolder folder;

 private:
  static constexpr uint32_t kBuffer = 1 << 16;

  static Texts texts_of(int32_t count,
                        const std::function<int32_t(uint32_t, char*)>& get) {
    Texts all;
    std::string buffer(kBuffer, '\0');
    for (int32_t i = 0; i < count; ++i) {
      const bool found = get(static_cast<uint32_t>(i), buffer.data()) == 1;
      all.push_back(found ? buffer.c_str() : "(-1)");
    }
    return all;
  }

  TempFolder errors_;
};

}  // namespace zenfo::test
