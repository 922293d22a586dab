// Loading of a hook library by name: one that is whole, one that lacks something, one that is not there.
#include <gtest/gtest.h>

#include <array>

#include "desktop/hook_loader.h"
#include "platform/hook_contract.h"

namespace {

TEST(HookLoaderTest, AWholeLibraryIsCalledAndOthersGiveTheirReason) {
  desktop::DesktopHookLoader loader(HOOK_FOLDER);
  std::string error;
  const auto library = loader.load("desktop_test_hook.so", error);
  ASSERT_NE(library, nullptr) << error;
  library->InitHook(0x1234567);
  library->DLL_STOP(1);
  library->EndHook();
  std::array<point_hook, hook_capacity> points{};
  std::int32_t count = 0;
  library->ENVOIS_BUF_TMP(points.data(), &count);
  ASSERT_EQ(count, 3);
  EXPECT_EQ(points[0].x, 1);
  EXPECT_EQ(points[0].y, 0x1234567);
  EXPECT_EQ(points[1].x, 3);
  EXPECT_EQ(points[1].y, 1);
  EXPECT_EQ(points[2].x, 2);

  EXPECT_EQ(loader.load("desktop_test_torn_hook.so", error), nullptr);
  EXPECT_NE(error.find("ENVOIS_BUF_TMP"), std::string::npos) << error;
  EXPECT_EQ(loader.load("nowhere.so", error), nullptr);
  EXPECT_NE(error.find("nowhere.so"), std::string::npos) << error;
}

}  // namespace
