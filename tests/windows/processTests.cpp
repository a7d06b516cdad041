#include <windows.h>

#include "platform/process.h"
#include "tests/fixture.h"

namespace tessel {
namespace {

TEST_F(TesselTest, NoLibraryIsLoadedFromTheCurrentFolder) {
    // After Save Directory, the current folder contains files from an image.
    std::filesystem::copy_file("C:/windows/system32/version.dll", At("first.dll"));
    std::filesystem::copy_file("C:/windows/system32/version.dll", At("second.dll"));
    HMODULE before = LoadLibraryW(L"first.dll");
    ASSERT_NE(before, nullptr);
    FreeLibrary(before);
    PrepareProcess();
    EXPECT_EQ(LoadLibraryW(L"second.dll"), nullptr);
}

}  // namespace
}  // namespace tessel
