// Texts and the system's own paths, arguments and variables.
#include "shared/system/paths.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using host::narrow;
using host::to_path;

// Characters of one, two, three and four bytes; the last takes two wide
// characters.
constexpr char kName[] = "a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80";
constexpr char16_t kWideName[] = u"a\u00FC\u20AC\U0001F600";

TEST(Paths, AreTheSameTextInTheSystemsForm) {
  EXPECT_EQ(to_path(kName), std::filesystem::path(kWideName));
  EXPECT_EQ(narrow(to_path(kName)), kName);
  EXPECT_EQ(narrow(to_path("")), "");
}

TEST(Paths, OfOtherBytesAreNotRefused) {
  EXPECT_FALSE(to_path("a\xFF\xC3").empty());
  EXPECT_EQ(narrow(to_path("a\xFF\xC3")) == "a\xFF\xC3",
            sizeof(host::NativeChar) == 1);
}

TEST(Paths, OpenFilesOfAnyName) {
  const TempFolder folder("J\xC3\xBCrgen");
  const std::string path = folder.path(kName);
  std::FILE* file = host::open_file(path, "wb");
  ASSERT_NE(file, nullptr);
  std::fclose(file);
  EXPECT_TRUE(file_exists(path));
  EXPECT_EQ(host::open_file(folder.path("none"), "rb"), nullptr);
}

TEST(Paths, AndVariablesKeepTheirCharacters) {
  EXPECT_EQ(host::environment("ZENFO_NO_SUCH_VARIABLE"), "");
#ifdef _WIN32
  _wputenv((L"ZENFO_NAME=" + to_path(kName).native()).c_str());
#else
  setenv("ZENFO_NAME", kName, 1);
#endif
  EXPECT_EQ(host::environment("ZENFO_NAME"), kName);
}

}  // namespace
}  // namespace zenfo::test
