#include <windows.h>

#include "platform/process.h"
#include "tests/fixture.h"

namespace tessel {
namespace {

TEST_F(TesselTest, NoLibraryIsLoadedFromTheCurrentFolder) {
    // A file of an image lies there after Save Directory, whatever it is.
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
