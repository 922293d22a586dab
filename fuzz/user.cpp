#include "fuzz/user.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "platform/text.h"

namespace {

constexpr int deepest = 5;
constexpr int patience = 60;        // yields after which the help is closed
constexpr int most_yields = 20000;  // within one event: more is a handler that goes on for ever

std::vector<point_hook> some_stroke(Chances& chances) {
  std::vector<point_hook> points;
  const int count = chances.once_in(10) ? chances.between(0, hook_max_points) : 32;
  if (chances.once_in(20)) {
    const int far = chances.one_of({10, 3000, 1'000'000'000});
    for (int k = 0; k < count; ++k) points.push_back({chances.between(-far, far), chances.between(-far, far)});
    return points;
  }
  point_hook at{chances.between(0, 1900), chances.between(0, 1000)};
  point_hook step{chances.between(-30, 30), chances.between(-30, 30)};
  for (int k = 0; k < count; ++k) {
    points.push_back(at);
    if (chances.once_in(12)) step = {chances.between(-30, 30), chances.between(-30, 30)};
    at = {at.x + step.x, at.y + step.y};
  }
  return points;
}

}  // namespace

User::User(std::uint64_t seed) : User(seed, {}) {
  const Profile profile = some_profile(chances_);
  if (!profile.text.empty()) desktop_.files.files[profile_name] = profile.text;
  if (profile.odd) ledger_.keeps(profile.text);
  if (chances_.once_in(40)) desktop_.journal.faults["load"] = 1;
  if (chances_.once_in(60)) desktop_.journal.faults["window"] = 1;
  if (chances_.once_in(40)) {
    desktop_.files.unreadable = true;
    if (!profile.text.empty()) ledger_.keeps(profile.text);
  }
}

User::User(std::uint64_t seed, Files files)
    : chances_(seed),
      services_{desktop_.services.clock,
                desktop_.services.events,
                desktop_.services.windows,
                desktop_.services.input,
                desktop_.services.shell,
                desktop_.services.profile,
                *this,
                desktop_.services.fonts,
                desktop_.services.hooks,
                desktop_.services.program},
      programme_(services_),
      ledger_(desktop_, programme_),
      witness_(desktop_) {
  desktop_.files.files = std::move(files);
  desktop_.tray = !chances_.once_in(4);
  if (chances_.once_in(6)) desktop_.journal.faults["font"] = chances_.between(1, 3);
  desktop_.others = {{9001, 0, 0, 0, 800, 600}, {9002, 9001, 100, 100, 200, 200}, {9003, 0, 900, 0, 500, 900}};
  for (int n = 0; n < 6; ++n) drawn_.push_back(some_stroke(chances_));
}

void User::note(const std::string& what) const {
  if (trace) std::printf("%*s%s\n", 2 * depth_, "", what.c_str());
}

long User::live(long most) {
  desktop_.during_yield = [this] { yielded(); };
  begin();
  programme_.start();
  desktop_.DoEvents();
  started_ = true;
  // No patron has been read while a box can be open.
  const std::string fault = witness_.fault({});
  Ledger::expect(fault.empty(), fault);
  Ledger::expect(desktop_.files.written == 0, "a start leaves the file alone");
  ledger_.open();
  long events = 0;
  for (; events < most && !desktop_.ended(); ++events) {
    yields_ = 0;
    begin();
    event();
    desktop_.DoEvents();
    // Whoever ends the program, it saves on the way.
    if (desktop_.ended()) ledger_.saves_since_the_event_began();
    check();
  }
  end();
  return events;
}

void User::begin() {
  desktop_.journal.lines.clear();
  ledger_.begin();
  witness_.begin();
}

void User::check() {
  const std::string fault = witness_.fault(ledger_.actions());
  Ledger::expect(fault.empty(), fault);
  ledger_.check();
}

void User::end() {
  note("end");
  desktop_.journal.faults.clear();
  begin();
  if (!desktop_.ended()) {
    const int written = desktop_.files.written;
    programme_.quit();
    Ledger::expect(desktop_.files.written > written, "the end saves");
  }
  check();
  const Mod_dessin::Table last = programme_.table();
  desktop_.journal.lines.clear();
  desktop_.draw(programme_.sk(), drawn_.front());
  desktop_.on_icon(programme_.sk(), platform::WM_RBUTTONUP);
  desktop_.advance(5000);
  if (!desktop_.journal.lines.empty() || programme_.table() != last) throw Broken("nothing is served after the end");
}

void User::event() {
  if (desktop_.ended()) return;
  ++depth_;
  SK& sk = programme_.sk();
  switch (chances_.below(16)) {
    case 0:
    case 1:
    case 2:
      stroke();
      break;
    case 3:
      key();
      break;
    case 4:
    case 5:
      wait();
      break;
    case 6:
      icon();
      break;
    case 7:
      list();
      break;
    case 8:
    case 9:
      on_editor();
      break;
    case 10:
      world();
      break;
    default:
      if (desktop_.on_screen(sk)) {
        mouse_on(sk);
      } else {
        icon();
      }
      break;
  }
  --depth_;
}

void User::event_behind_box() {
  if (desktop_.ended() || depth_ > deepest) return;
  ++depth_;
  switch (chances_.below(12)) {
    case 0:
      stroke();
      desktop_.DoEvents();
      break;
    case 1:
      key();
      desktop_.DoEvents();
      break;
    case 2:
      wait();
      break;
    case 3:
      icon();
      break;
    case 4:
      if (chances_.once_in(started_ ? 20 : 2)) {
        note("quit from outside");
        programme_.quit();
      }
      break;
    default:
      break;
  }
  --depth_;
}

void User::stroke() {
  if (chances_.once_in(8)) drawn_[chances_.below(drawn_.size())] = some_stroke(chances_);
  std::vector<point_hook> stroke = chances_.among(drawn_);
  for (point_hook& point : stroke) point.x += chances_.between(0, 2);
  note("stroke");
  if (!chances_.once_in(6)) desktop_.ticks = desktop_.later(chances_.between(0, 3000));
  desktop_.cursor = {chances_.between(0, 1500), chances_.between(0, 900)};
  desktop_.hook.state.stroke = std::move(stroke);
  witness_.stroke();
  desktop_.report(programme_.sk(), hook_key_down, key_stroke);
}

void User::key() {
  const int code = chances_.one_of({key_shift, key_control, key_control, key_stroke, 27, 65});
  note("key " + std::to_string(code));
  if (code == key_stroke) witness_.stroke();
  desktop_.report(programme_.sk(), chances_.one_of({hook_key_down, hook_key_up}), code);
}

void User::wait() {
  // The letters of the About panel take their time: a few frames do.
  const bool letters = programme_.sk().TmrPic.Enabled;
  const int time = chances_.once_in(10) && !letters ? chances_.between(0, 2500) : chances_.between(0, 60);
  note("wait " + std::to_string(time));
  desktop_.advance(time);
}

void User::icon() {
  if (!desktop_.tray) return;
  note("icon");
  desktop_.on_icon(programme_.sk(), chances_.one_of({platform::WM_MOUSEMOVE, platform::WM_LBUTTONDOWN,
                                                     platform::WM_LBUTTONDBLCLK, platform::WM_RBUTTONUP}));
}

void User::list() {
  platform::ListView& list = programme_.sk().LV;
  if (!desktop_.on_screen(programme_.sk())) return;
  if (list.Count() > 0 && !programme_.sk().Pictxt.Visible) {
    const int row = chances_.between(1, list.Count());
    note("pick " + list.row(row).Text.get());
    list.select(row);
    fire(list.ItemClick, row);
    if (chances_.once_in(3)) fire(list.DblClick);
  } else {
    int enter = 13;
    fire(list.KeyPress, enter);
  }
}

bool User::on_screen(const platform::Control& control) const {
  return control.Visible;
}

platform::MouseEvent User::anywhere(const platform::Control& control) {
  const auto within = [&](float extent) {
    return static_cast<float>(chances_.between(-50, static_cast<int>(extent) + 50));
  };
  return {chances_.one_of({0, 0, 1, 1, 2, 3, 4}), chances_.between(0, 7), within(control.Width),
          within(control.Height)};
}

void User::mouse_on(platform::Form& form) {
  if (chances_.once_in(60)) {
    note("close " + form.Name);
    fire(form.CloseRequest);
  } else if (chances_.once_in(8)) {
    fire(form.MouseMove, platform::MouseEvent{chances_.between(0, 2), 0, 10, 10});
  } else {
    on_control(*chances_.among(form.Controls));
  }
}

// The pointer comes over a control, and a button goes down and up there, and again.
void User::on_control(platform::Control& control) {
  SK& sk = programme_.sk();
  if (!on_screen(control) || (&control == &sk.LV && sk.Pictxt.Visible)) return;
  const bool quits = control.Name == "Bouton" && control.Index == 4 && &control.form() == &sk;
  if (quits && !chances_.once_in(12)) return;
  note("on " + control.form().Name + "." + control.Name + "(" + std::to_string(control.Index) + ")");
  platform::MouseEvent event = anywhere(control);
  // The form may go with any of these.
  const platform::MouseHandler move = control.MouseMove, down = control.MouseDown, up = control.MouseUp;
  const platform::ClickHandler click = control.Click, twice = control.DblClick;
  const bool editor = programme_.actions().loaded() && &control.form() != &sk;
  const auto gone = [&] { return desktop_.ended() || (editor && !programme_.actions().loaded()); };
  fire(move, event);
  // A drag, or a trembling hand that comes back to the same place.
  for (int n = chances_.between(0, 3); n > 0 && !gone(); --n) {
    event.Button = chances_.one_of({0, 1, 1, 2});
    if (chances_.once_in(2)) event.X += static_cast<float>(chances_.between(-20, 20));
    if (chances_.once_in(2)) event.Y += static_cast<float>(chances_.between(-20, 20));
    fire(move, event);
  }
  if (gone() || chances_.once_in(3)) return;
  event.Button = chances_.once_in(5) ? 2 : 1;
  fire(down, event);
  if (gone()) return;
  if (editor && control.Name == "lblComC") binds("C:" + static_cast<platform::Label&>(control).Caption.get());
  fire(up, event);
  if (gone() || event.Button != 1) return;
  const int view = control.Name == "Bouton" && !editor && control.Index < 4 ? control.Index : -1;
  const bool deletes = control.Name == "lblCom" && !editor && control.Index == 0;
  fire(click);
  if (view >= 0) ledger_.views(view);
  if (deletes) ledger_.miniatures();
  if (gone() || !chances_.once_in(4)) return;
  if (control.Name == "lblpatron" && &control.form() == &sk) ledger_.saves();
  fire(twice);
}

void User::on_editor() {
  if (!programme_.actions().loaded() || !programme_.actions().on_screen()) {
    if (chances_.once_in(2)) list();
    return;
  }
  Actions& form = programme_.actions()();
  if (chances_.once_in(3) && form.Texte.Visible) return type_into(form.Texte, "T:");
  if (chances_.once_in(3) && form.Prog.Visible) return type_into(form.TextProg, "P:");
  if (chances_.once_in(20)) {
    int escape = 27;
    return fire(form.KeyPress, escape);
  }
  mouse_on(form);
}

void User::type_into(platform::TextBox& box, const std::string& prefix) {
  if (!chances_.once_in(4)) box.Text = some_action();
  note("type " + prefix + box.Text.get().substr(0, 60));
  int code = chances_.one_of({13, 13, 13, 27, 65});
  if (code == 13) binds(prefix + box.Text.get());
  fire(box.KeyPress, code);
}

std::string User::some_name() {
  switch (chances_.below(8)) {
    case 0:
      // Of one of the first slots: most are empty, and now and then one is a hole.
      return programme_.table().patrons[chances_.below(programme_.table().nb_patrons + 1U)].Nom;
    case 1:
      return "";
    case 2:
      return chances_.one_of<const char*>({" ",      "   ",     "-",        "pos",      "Pos", "[x]",    "a=b", "a;b",
                                           "漢",     "\x01",    "a\tb",     "ÿ",        "ß",   "œ",      "été", "ÉTÉ",
                                           "\u00A0", "a\u00A0", "\x7F",     "{U+6F22}", "..",  "\"a\"",  "ƒ",   "µ",
                                           " a",     "a ",      "\xFF\xFE", "ind",      "'",   "\u0085", "__"});
    case 3:
      return std::string(static_cast<std::size_t>(chances_.between(1, 600)), 'n');
    default:
      return "nom " + std::to_string(chances_.below(200));
  }
}

std::string User::some_action() {
  if (chances_.once_in(2)) return "texte " + std::to_string(chances_.below(50));
  return chances_.one_of<std::string>({"", "a\r\nb", "\n", " blanc", "blanc ", "blanc{ }", "[Pos]", ";x", "a=b",
                                       "漢字 é", "{U+6F22}", "\"x\"", "\xC3", "+(ab)", "/usr/bin/xterm -e top", "\t",
                                       "\r", "C:", std::string("nul\0", 4)});
}

std::string User::chosen() const {
  platform::ListView& list = const_cast<Programme&>(programme_).sk().LV;
  return list.SelectedItem() != nullptr ? list.SelectedItem()->Text.get() : std::string();
}

// What goes on around the program.
void User::world() {
  switch (chances_.below(12)) {
    case 0:
      note("the disk refuses");
      desktop_.journal.faults["replace"] = chances_.between(1, 2);
      break;
    case 1:
      desktop_.journal.faults["set_aside"] = chances_.between(0, 1);
      break;
    case 2:
      desktop_.journal.faults["font"] = chances_.between(0, 1);
      break;
    case 3:
    case 4:
      hand();
      break;
    case 5:
      desktop_.keyboard[chances_.one_of({0x90U, 0x14U, 0x91U})] ^= 1U;
      break;
    case 6:
      if (chances_.once_in(40)) {
        note("quit from outside");
        programme_.quit();
      }
      break;
    case 7:
    case 8: {
      const char* const service =
          chances_.one_of({"SetForegroundWindow", "AnimateWindow", "SetWindowPos", "PostMessageA", "ShowWindow",
                           "ShellExecuteA", "Shell_NotifyIconA", "shell object"});
      note(std::string("fails: ") + service);
      desktop_.journal.faults[service] = chances_.between(1, 3);
      break;
    }
    case 9:
      if (!chances_.once_in(4)) break;
      note("the file cannot be read");
      desktop_.files.unreadable = true;
      break;
    default:
      break;
  }
}

// Another program, or the user with an editor.
void User::hand() {
  const std::string mark = "[HAND" + std::to_string(chances_.below(1'000'000)) + "]\r\n";
  if (chances_.once_in(4)) {
    note("a hand removes the file");
    ledger_.removed_by_hand();
  } else {
    note("a hand");
    ledger_.changed_by_hand(chances_.once_in(2) ? mark : some_profile(chances_).text + mark);
  }
}

bool User::help_rolls() const {
  const SK& sk = const_cast<Programme&>(programme_).sk();
  return sk.Pictxt.Visible && !sk.PicSplash(0).Visible;
}

void User::close_help() {
  note("close help");
  if (chances_.once_in(4)) {
    fire(programme_.sk().Pictxt.Click);
  } else {
    fire(programme_.sk().Bouton(6).Click);
  }
}

// Inside a yield of a handler. The next one comes here too.
void User::yielded() {
  desktop_.during_yield = [this] { yielded(); };
  if (desktop_.ended()) return;
  if (++yields_ > most_yields) throw Broken("every handler comes to an end");
  if (boxes_ > 0) return;
  if (help_rolls() && (yields_ > patience || depth_ > deepest)) {
    if (chances_.once_in(3)) close_help();
  } else if (depth_ > 0 && depth_ <= deepest && chances_.once_in(6)) {
    event();
  }
}
