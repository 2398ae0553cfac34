// Shell facts.
#include "platform/shell.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#ifdef _WIN32
#include "platform/win32/system.h"
#endif
#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

TEST(IsPerceivedText, IsFalseWithoutAKnownExtension) {
  for (const char* path :
       {"", "a", "a.", "txt", "a.no-such-extension", "folder.txt/file"}) {
    EXPECT_FALSE(is_perceived_text(path)) << path;
  }
}

#ifndef _WIN32
TEST(IsPerceivedText, FollowsTheLastExtensionInEitherCase) {
  for (const char* path : {"a.txt", "A.TXT", "x.y.txt", "a.exe/b.txt", ".c"}) {
    EXPECT_TRUE(is_perceived_text(path)) << path;
  }
  for (const char* path : {"a.exe", "a.txt.exe", "a.tx", "a.txtx"}) {
    EXPECT_FALSE(is_perceived_text(path)) << path;
  }
}

TEST(ReadTypeName, NamesTheExtensionInCapitals) {
  const struct {
    const char* path;
    const char* type;
  } cases[] = {{"a.txt", "TXT File"},
               {"/x/a.b.Html", "HTML File"},
               {"a", "File"},
               {"a.", "File"},
               {"", "File"},
               {"x.y/a", "File"},
               {".profile", "PROFILE File"},
               {"a.\xC3\xA4z", "\xC3\xA4Z File"}};
  for (const auto& c : cases) {
    std::string type = "old";
    EXPECT_TRUE(read_type_name(c.path, type));
    EXPECT_EQ(c.type, type) << c.path;
  }
}

TEST(ReadIconIndex, IsZeroNatively) {
  int32_t index = 7;
  EXPECT_TRUE(read_icon_index("a.txt", index));
  EXPECT_EQ(0, index);
  EXPECT_EQ(0, system_image_list("a.txt"));
}
#else
// Registers the perceived type of an extension for one test.
class PerceivedType {
 public:
  PerceivedType(const char* extension, std::string_view value)
      : key_name_(extension) {
    HKEY key = nullptr;
    EXPECT_EQ(ERROR_SUCCESS,
              RegCreateKeyA(HKEY_CLASSES_ROOT, key_name_.c_str(), &key));
    EXPECT_EQ(ERROR_SUCCESS,
              RegSetValueExA(key, "PerceivedType", 0, REG_SZ,
                             reinterpret_cast<const BYTE*>(value.data()),
                             static_cast<DWORD>(value.size())));
    RegCloseKey(key);
  }
  ~PerceivedType() { RegDeleteKeyA(HKEY_CLASSES_ROOT, key_name_.c_str()); }

 private:
  std::string key_name_;
};

TEST(IsPerceivedText, ReadsTheRegistry) {
  using namespace std::literals;
  const struct {
    std::string_view value;
    bool is_text;
  } cases[] = {{"text\0"sv, true},
               {"text"sv, true},
               {"texts\0"sv, false},
               {"tex\0"sv, false},
               {"audio\0"sv, false},
               {"\0"sv, false},
               {"text of more bytes than a comparison needs\0"sv, false}};
  for (const auto& c : cases) {
    const PerceivedType type(".zenfotest", c.value);
    EXPECT_EQ(c.is_text, is_perceived_text("x.zenfotest")) << c.value;
    EXPECT_EQ(c.is_text, is_perceived_text("C:\\a.b\\x.y.ZENFOTEST"));
    EXPECT_FALSE(is_perceived_text("x.zenfotest\\y"));
  }
  EXPECT_FALSE(is_perceived_text("x.zenfotest"));
}

TEST(ReadTypeName, FailsForAMissingFileAndLeavesTheText) {
  const test::TempFolder folder;
  std::string type = "old";
  int32_t index = 7;
  EXPECT_FALSE(read_type_name(folder.path("missing").c_str(), type));
  EXPECT_EQ("old", type);
  EXPECT_FALSE(read_icon_index(folder.path("missing").c_str(), index));
  EXPECT_EQ(7, index);
  EXPECT_TRUE(read_type_name(folder.file("a.txt", "").c_str(), type));
  EXPECT_NE("old", type);
}
#endif

}  // namespace
}  // namespace zenfo::platform
