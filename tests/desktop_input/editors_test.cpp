// Typing into editors as they are on every desktop, one for each toolkit.
#include <X11/keysym.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "desktop/input.h"
#include "tests/desktop_input/fixture.h"

namespace {

namespace fs = std::filesystem;
using test_support::eventually;
using test_support::Process;

const std::string prose = "Bonjour, ça va ? œuvre 12 € 漢字 éàèùç";

struct Editor {
  const char* program;
  const char* layout;
};

class Editors : public KeyTest, public testing::WithParamInterface<Editor> {
 protected:
  void SetUp() override {
    KeyTest::SetUp();
    window_manager_ = test_support::start_window_manager(server);
    ASSERT_TRUE(window_manager_.running());
    std::string pattern = (fs::temp_directory_path() / "programs-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    home = pattern;
  }
  void TearDown() override { fs::remove_all(home); }

  std::vector<std::string> environment() const {
    const std::string here = home.string();
    return {server.environment(),      "HOME=" + here,
            "XDG_CONFIG_HOME=" + here, "XDG_RUNTIME_DIR=" + here,
            "LC_ALL=C.UTF-8",          "QT_QPA_PLATFORM=xcb",
            "NO_AT_BRIDGE=1",          "DBUS_SESSION_BUS_ADDRESS=disabled:",
            "GSETTINGS_BACKEND=memory"};
  }
  // Waits until the window with the keyboard has this in its title.
  static bool has_keyboard(const std::string& title) {
    return eventually([&] {
      return Process({"sh", "-c", "xdotool getwindowfocus getwindowname 2>/dev/null | grep -qiF '" + title + "'"})
                 .wait() == 0;
    });
  }
  static std::string content(const fs::path& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  fs::path home;

 private:
  Process window_manager_;
};

// An editor on a file, which it saves on Ctrl+S: types, saves, selects all, cuts, pastes, goes to the end, saves.
TEST_P(Editors, GetTextAndShortcuts) {
  const auto& [program, layout] = GetParam();
  const fs::path file = home / "letter.txt";
  std::ofstream(file) << "old";
  set_layout(layout);
  if (std::string(layout).find(',') != std::string::npos) test_support::User(server).type(XK_ISO_Next_Group);
  const Process editor({program, file.string()}, environment());
  ASSERT_TRUE(has_keyboard("letter.txt"));
  desktop::DesktopInput input;
  const auto shortcut = [&](std::uint8_t letter) {
    input.keybd_event(0x11, 0, 0, 0);
    input.keybd_event(letter, 0, 0, 0);
    input.keybd_event(letter, 0, platform::KEYEVENTF_KEYUP, 0);
    input.keybd_event(0x11, 0, platform::KEYEVENTF_KEYUP, 0);
  };
  // Line ends aside: some editors set one at the end of every file.
  const auto saved = [&](const std::string& text) {
    shortcut('S');
    return eventually([&] {
      std::string lines = content(file);
      std::erase(lines, '\n');
      return lines == text;
    });
  };
  input.SendKeys("^a" + prose, false);
  EXPECT_TRUE(saved(prose)) << content(file);
  for (const char letter : {'A', 'X', 'V'}) shortcut(static_cast<std::uint8_t>(letter));
  input.SendKeys("^v^{END}+(ab)", false);
  EXPECT_TRUE(saved(prose + prose + "AB")) << content(file);
}

INSTANTIATE_TEST_SUITE_P(Toolkits, Editors,
                         testing::Values(Editor{"featherpad", "fr bepo"}, Editor{"featherpad", "ru"},
                                         Editor{"mousepad", "fr"}, Editor{"mousepad", "us,ru -option grp:toggle"}));

}  // namespace
