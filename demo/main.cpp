// A recorded session: somebody sits down at a private screen, draws with the right button, saves patterns, binds
// actions to them and draws again. What the program makes of it is told line by line, as it shows on the outside: in
// its file, in a terminal, on the screen. Screenshots stay in the folder demo/ beside the program.
//
// usage: strokemind_demo [PROGRAM [FOLDER]]             plays it, with this program; demo/ comes to lie in FOLDER
//        strokemind_demo --pictures FOLDER [SCALE]      makes the pictures of the guides instead
#include <X11/keysym.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "demo/pictures.h"
#include "demo/session.h"
#include "stage/desk.h"

namespace {

using stage::Path;

// Where things are within the window, pixels; rows of the list fill columns of two.
constexpr std::pair first_row{45, 45};
constexpr std::pair second_row{45, 140};
constexpr std::pair save_label{268, 250};
constexpr std::pair close_button{12, 8};
constexpr std::pair heading_text{140, 87};
constexpr std::pair heading_commands{140, 62};
constexpr std::pair text_box{160, 200};
constexpr std::pair command_grow{150, 160};  // "Agrandir" of the editor
// What the animated picture shows of the screen: the terminal and the window beside it.
constexpr demo::Area filmed{20, 20, 900, 440};

Path corner() {
  return {{190, 130}, {190, 340}, {400, 340}};
}

Path circle() {
  Path path;
  for (int k = 0; k <= 40; ++k) {
    const double angle = 6.2832 * k / 40;
    path.emplace_back(280 + static_cast<int>(110 * std::cos(angle)), 220 + static_cast<int>(110 * std::sin(angle)));
  }
  return path;
}

class Play {
 public:
  Play(const std::string& program, const std::filesystem::path& folder)
      : shots_(folder / "demo"),
        session_({.screen = "1200x800x24", .folder = shots_, .profile = "", .window = {560, 60}, .program = program}) {}

  // Plays it; gives whether everything came out as it should.
  bool play() {
    session_.start_tray();
    session_.start_terminal();
    session_.start_program();
    tell("a first start shows the window of itself", look_until([&] { return session_.window_shows(); }));
    save(corner(), "coin", "COIN");
    save(circle(), "cercle", "CERCLE");
    bind_text();
    bind_command();
    act_on_terminal();
    quit();
    std::printf("%s; screenshots in %s\n", well_ ? "all went as it should" : "something went wrong", shots_.c_str());
    return well_;
  }

 private:
  static bool look_until(const std::function<bool()>& condition) { return demo::Session::look_until(condition); }

  void tell(const std::string& what, bool well) {
    well_ = well_ && well;
    std::printf("%s %s\n", well ? "  ok  " : "FAILED", what.c_str());
    std::fflush(stdout);
    // A screenshot of each step, in order.
    char name[16];
    std::snprintf(name, sizeof name, "%02d.png", ++step_);
    session_.screenshot(shots_ / name);
  }
  bool file_has(const std::string& text) {
    return look_until([&] { return stage::contents(session_.profile()).find(text) != std::string::npos; });
  }

  void save(const Path& shape, const std::string& typed, const std::string& name) {
    session_.draw(shape);
    session_.click(save_label);
    session_.type(typed);
    session_.user.type(XK_Return);
    tell("drawn and saved under the name " + name, file_has("[" + name + "]"));
  }
  // The editor stands where the window does.
  void bind_text() {
    session_.click(first_row, 2);
    session_.click(heading_text);
    session_.click(text_box);
    session_.type("bonjour ");
    tell("COIN is to type \"bonjour \"", true);
    session_.user.type(XK_Return);
    demo::Session::look();
  }
  void bind_command() {
    session_.click(second_row, 2);
    session_.click(heading_commands);
    tell("CERCLE is to maximise the window under the pointer", true);
    session_.click(command_grow);
  }
  void act_on_terminal() {
    session_.user.move_to(120, 120);
    session_.user.click(1);
    bool typed = false;
    session_.film(corner(), filmed, shots_ / "geste.gif", [&] {
      demo::Session::look();
      session_.user.type(XK_Return);
      typed = look_until([&] { return session_.typed().find("bonjour") != std::string::npos; });
    });
    tell("drawn again: the terminal got the text; the film of it is geste.gif", typed);
    session_.draw(circle());
    // The terminal has come to where it did not reach before.
    tell("the circle maximised the terminal",
         look_until([&] { return session_.user.pixels(60, 780, 1, 1) == session_.user.pixels(200, 300, 1, 1); }));
  }
  void quit() {
    session_.click(close_button);
    const int status = session_.program.wait();
    tell("closed; both actions are in the file", status == 0 && file_has("=T:bonjour") && file_has("=C:Agrandir"));
  }

  const std::filesystem::path shots_;
  demo::Session session_;
  int step_ = 0;
  bool well_ = true;
};

}  // namespace

int main(int argc, char** argv) {
  const std::string program = argc > 1 ? argv[1] : PROGRAM_FOLDER "/Strokemind";
  if (program == "--pictures" && (argc == 3 || argc == 4)) {
    return demo::take_pictures(argv[2], argc == 4 ? argv[3] : "1") ? 0 : 1;
  }
  if (program.starts_with("-") || argc > 3) {
    std::fputs("usage: strokemind_demo [PROGRAM [FOLDER]] | --pictures FOLDER [SCALE]\n", stderr);
    return 2;
  }
  return Play(program, argc > 2 ? argv[2] : PROGRAM_FOLDER).play() ? 0 : 1;
}
