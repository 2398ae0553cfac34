// The version resource of the DLL, read as Windows shows it: the version that
// the header states, and the product.
#ifdef _WIN32
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "zenfofr130.h"

namespace zenfo::test {
namespace {

class VersionResource : public testing::Test {
 protected:
  void SetUp() override {
    char path[MAX_PATH];
    ASSERT_GT(GetModuleFileNameA(GetModuleHandleA("ZenfoFR130.dll"), path,
                                 sizeof path),
              0u);
    DWORD unused = 0;
    bytes_.resize(GetFileVersionInfoSizeA(path, &unused));
    ASSERT_FALSE(bytes_.empty()) << path << " has no version resource";
    ASSERT_TRUE(GetFileVersionInfoA(path, 0, static_cast<DWORD>(bytes_.size()),
                                    bytes_.data()));
  }
  // A text in the only language, US English, as Unicode.
  std::string text(const std::string& name) {
    const std::string block = "\\StringFileInfo\\040904B0\\" + name;
    void* value = nullptr;
    UINT size = 0;
    return VerQueryValueA(bytes_.data(), block.c_str(), &value, &size)
               ? static_cast<const char*>(value)
               : "none";
  }

  std::vector<char> bytes_;
};

TEST_F(VersionResource, NamesVersionAndProduct) {
  EXPECT_EQ(text("FileVersion"), ZENFO_VERSION);
  EXPECT_EQ(text("ProductVersion"), ZENFO_VERSION);
  EXPECT_EQ(text("ProductName"), "ZenfoFR130");
  EXPECT_EQ(text("OriginalFilename"), "ZenfoFR130.dll");
  EXPECT_EQ(text("FileDescription"),
            "Find-and-replace engine for many files at once");
  EXPECT_EQ(text("CompanyName"), "none");
}

TEST_F(VersionResource, HasTheSameVersionAsNumbers) {
  void* value = nullptr;
  UINT size = 0;
  ASSERT_TRUE(VerQueryValueA(bytes_.data(), "\\", &value, &size));
  ASSERT_GE(size, sizeof(VS_FIXEDFILEINFO));
  const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(value);
  EXPECT_EQ(std::to_string(HIWORD(info.dwFileVersionMS)) + '.' +
                std::to_string(LOWORD(info.dwFileVersionMS)) + '.' +
                std::to_string(HIWORD(info.dwFileVersionLS)),
            ZENFO_VERSION);
  EXPECT_EQ(info.dwFileType, DWORD{VFT_DLL});
}

}  // namespace
}  // namespace zenfo::test

#endif  // _WIN32
