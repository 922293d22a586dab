#include "demo/pictures.h"

#include <X11/keysym.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <utility>
#include <vector>

#include "demo/session.h"

namespace demo {

namespace {

// Where things are within the window, pixels at scale 1.
constexpr std::pair nowhere{150, 292};
constexpr std::pair fifth_row{203, 45};
constexpr std::pair save_label{268, 250};
constexpr std::pair about_button{245, 215};
constexpr std::pair help_button{261, 215};
constexpr std::pair view_thumbnails{277, 215};
constexpr std::array<std::pair<int, int>, 4> views{{view_thumbnails, {291, 215}, {303, 215}, {316, 215}}};
constexpr std::pair heading_commands{140, 62};
constexpr std::pair heading_text{140, 87};
constexpr std::pair heading_programs{140, 111};
constexpr std::pair editor_close{318, 8};
constexpr std::pair hide_button{318, 8};
constexpr std::pair tray_icon{1588, 1187};

class Pictures {
 public:
  Pictures(std::filesystem::path folder, const std::string& scale)
      : folder_(std::move(folder)),
        session_({.screen = "1600x1200x24",
                  .folder = std::filesystem::path(PROGRAM_FOLDER) / "pictures",
                  .profile = without_place(stage::contents(SOURCE_TREE "/assets/example/Strokemind.AI")),
                  .window = {300, 120},
                  .scale = scale}) {
    std::filesystem::create_directories(folder_);
  }

  bool take() {
    // Without a tray the window shows by itself.
    session_.start_program();
    if (!Session::look_until([&] { return session_.window_shows(); })) return false;
    session_.draw({{100, 300}, {150, 400}, {200, 300}});
    window("fenetre");
    list();
    editor();
    panels();
    saving();
    menu();
    return true;
  }

 private:
  static std::string without_place(const std::string& profile) { return profile.substr(0, profile.find("[Pos]")); }
  // The window or what stands upon it, with the pointer where it marks nothing.
  void window(const std::string& name) {
    session_.hover(nowhere);
    Session::look();
    session_.screenshot(folder_ / (name + ".png"), session_.window_area());
  }
  void list() {
    for (std::size_t view = 0; view < views.size(); ++view) {
      session_.click(views[view]);
      window("vue-" + std::to_string(view + 1));
    }
    session_.click(view_thumbnails);
  }
  void editor() {
    session_.click(fifth_row, 2);
    Session::look();
    window("editeur-1");
    session_.click(heading_commands);
    window("editeur-2");
    session_.click(heading_text);
    window("editeur-3");
    session_.click(heading_programs);
    window("editeur-4");
    session_.click(editor_close);
  }
  void panels() {
    session_.click(help_button);
    Session::look(6);
    window("aide");
    session_.click(help_button);
    session_.click(about_button);
    Session::look(6);
    window("apropos");
    session_.click(about_button);
  }
  void saving() {
    Path circle;  // no patron looks like it
    for (int degrees = 0; degrees <= 360; degrees += 10) {
      const double angle = degrees * 3.14159265 / 180;
      circle.emplace_back(150 - static_cast<int>(80 * std::sin(angle)), 300 - static_cast<int>(80 * std::cos(angle)));
    }
    session_.draw(circle);
    session_.click(save_label);
    session_.type("rond");
    Session::look();
    Area dialog = session_.window_area();
    dialog.left -= dialog.width / 12;
    dialog.width += dialog.width / 8;
    session_.screenshot(folder_ / "enregistrer.png", dialog);
    session_.user.type(XK_Escape);
    Session::look();
  }
  // The menu opens at the icon while the window is hidden.
  void menu() {
    session_.start_tray();
    Session::look(3);
    session_.click(hide_button);
    session_.user.move_to(tray_icon.first, tray_icon.second);
    session_.user.move_to(tray_icon.first - 1, tray_icon.second - 1);
    Session::look();
    session_.screenshot(folder_ / "menu.png", {tray_icon.first - 220, tray_icon.second - 160, 232, 172});
  }

  std::filesystem::path folder_;
  Session session_;
};

}  // namespace

bool take_pictures(const std::filesystem::path& folder, const std::string& scale) {
  const bool well = Pictures(folder, scale).take();
  if (!well) std::fputs("strokemind_demo: the window does not show\n", stderr);
  return well;
}

}  // namespace demo
