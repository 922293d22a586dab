// Typing into editors as they are on every desktop, one for each toolkit.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "desktop/input.h"
#include "tests/desktop_input/fixture.h"

namespace {

namespace fs = std::filesystem;
using stage::eventually;
using stage::Process;

using Editor = std::pair<std::string, std::string>;  // program and layout
class Editors : public KeyTest, public testing::WithParamInterface<Editor> {};

// An editor on a file, which it saves on Ctrl+S: types, saves, selects all, cuts, pastes, goes to the end, saves.
TEST_P(Editors, GetTextAndShortcuts) {
  const std::string prose = "Bonjour, ça va ? œuvre 12 € 漢字 éàèùç";
  const auto& [program, layout] = GetParam();
  const Process window_manager = stage::start_window_manager(server);
  std::string home = (fs::temp_directory_path() / "editor-XXXXXX").string();
  ASSERT_NE(mkdtemp(home.data()), nullptr);
  const std::string file = home + "/letter.txt";
  std::ofstream(file) << "old";
  set_layout(layout);
  const Process editor(
      {program, file},
      {server.environment(), "HOME=" + home, "XDG_CONFIG_HOME=" + home, "XDG_RUNTIME_DIR=" + home, "LC_ALL=C.UTF-8",
       "QT_QPA_PLATFORM=xcb", "NO_AT_BRIDGE=1", "DBUS_SESSION_BUS_ADDRESS=disabled:", "GSETTINGS_BACKEND=memory"});
  const std::string window_with_keyboard = "xdotool getwindowfocus getwindowname 2>/dev/null | grep -qF letter.txt";
  ASSERT_TRUE(eventually([&] { return Process({"sh", "-c", window_with_keyboard}).wait() == 0; }));
  desktop::DesktopInput input;
  const auto shortcut = [&](char letter) {
    const auto key = static_cast<std::uint8_t>(letter);
    for (const std::uint32_t flags : {0U, platform::KEYEVENTF_KEYUP}) {
      input.keybd_event(0x11, 0, flags, 0), input.keybd_event(key, 0, flags, 0);
    }
  };
  // Line ends aside: some editors set one at the end of every file.
  const auto saved = [&](const std::string& text) {
    shortcut('S');
    return eventually([&] {
      std::ifstream in(file);
      std::string content(std::istreambuf_iterator<char>(in), {});
      std::erase(content, '\n');
      return content == text;
    });
  };
  input.SendKeys("^a" + prose, false);
  EXPECT_TRUE(saved(prose));
  for (const char letter : {'A', 'X', 'V'}) shortcut(letter);
  input.SendKeys("^v^{END}+(ab)", false);
  EXPECT_TRUE(saved(prose + prose + "AB"));
  fs::remove_all(home);
}

INSTANTIATE_TEST_SUITE_P(Toolkits, Editors,
                         testing::Values(Editor("featherpad", "fr bepo"), Editor("featherpad", "ru"),
                                         Editor("mousepad", "fr"), Editor("mousepad", "us,ru -option grp:toggle")));

}  // namespace
