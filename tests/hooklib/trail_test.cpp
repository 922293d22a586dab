// The trail on the screen: there while drawing, gone afterwards, and nothing damaged.
#include <X11/Xatom.h>

#include <tuple>

#include "tests/hooklib/fixture.h"

namespace hook_test {
namespace {

constexpr std::uint32_t green = 0x00ff00;

class TrailOn : public Hooked, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    Hooked::SetUp();
    if (!GetParam() || HasFatalFailure()) return;
    compositor = test_support::start_compositor(server);
    ASSERT_TRUE(compositor.running());
  }
  std::vector<std::uint32_t> screen() { return user->pixels(250, 150, 700, 500); }
  // Pixels of the trail in a row of 40 pixels across its downward part.
  long width_at(int y) {
    const auto row = user->pixels(380, y, 40, 1);
    return std::count(row.begin(), row.end(), green);
  }
  void set_dpi(const std::string& dpi) {
    Display* const display = target->display();
    const std::string resources = "Xft.antialias:\t1\nXft.dpi:\t" + dpi + "\n";
    XChangeProperty(display, DefaultRootWindow(display), XA_RESOURCE_MANAGER, XA_STRING, 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(resources.data()), static_cast<int>(resources.size()));
    XSync(display, False);
  }

  test_support::Process compositor;
};

TEST_P(TrailOn, IsDrawnAndLeavesNothing) {
  // The compositor paints when it has time: until then the screen is not what it will be.
  user->move_to(900, 600);
  ASSERT_TRUE(eventually([&] { return user->pixels(600, 400, 1, 1).front() == 0x808080; }));
  const auto before = screen();
  for (const auto& [dpi, pixels] : {std::pair("96", 3L), std::pair("192", 6L)}) {
    const long width = pixels;
    set_dpi(dpi);
    for (const bool cancel : {false, true}) {
      SCOPED_TRACE(testing::Message() << dpi << " dpi, cancelled " << cancel);
      begin_drawing();
      EXPECT_TRUE(eventually([&] { return std::abs(width_at(370) - width) <= 1 && width_at(430) > 0; }));
      if (cancel) user->type(XK_Escape);
      EXPECT_TRUE(!cancel || eventually([&] { return screen() == before; }));
      user->release(3);
      EXPECT_TRUE(eventually([&] { return screen() == before; }));
    }
  }
}

TEST_P(TrailOn, ShowsLongStrokesWhole) {
  ASSERT_TRUE(eventually([&] { return user->pixels(600, 400, 1, 1).front() == 0x808080; }));
  Path zigzag;
  for (int i = 0; i < 300; ++i) zigzag.emplace_back(300 + 2 * i, i % 2 == 0 ? 300 : 400);
  begin_drawing(zigzag);
  const auto any_green = [&](int x, int width) {
    const auto pixels = user->pixels(x, 290, width, 120);
    return std::find(pixels.begin(), pixels.end(), green) != pixels.end();
  };
  EXPECT_TRUE(eventually([&] { return any_green(300, 20) && any_green(600, 20) && any_green(880, 10); }));
  user->release(3);
  EXPECT_TRUE(reported({stroke_report}));
  EXPECT_TRUE(eventually([&] { return !any_green(290, 620); }));
}

INSTANTIATE_TEST_SUITE_P(Screens, TrailOn, testing::Values(false, true),
                         [](const auto& screen) { return screen.param ? "Composited" : "Plain"; });

}  // namespace
}  // namespace hook_test
