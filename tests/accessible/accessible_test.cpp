// The windows as a screen reader finds them, and as they are worked without a mouse.
#include <X11/keysym.h>
#include <atspi/atspi.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <utility>

#include "tests/program/desk.h"

using testing::ElementsAre;

namespace {

using Object = std::shared_ptr<AtspiAccessible>;
using Lines = std::vector<std::string>;

Object own(AtspiAccessible* object) {
  return {object, [](AtspiAccessible* each) { g_clear_object(&each); }};
}

std::string text(gchar* owned) {
  const std::unique_ptr<gchar, decltype(&g_free)> holder(owned, g_free);
  return owned != nullptr ? owned : "";
}

// "role: name", and where there is more to be said " (description)" and " *", which is for chosen.
std::string describe(AtspiAccessible* object) {
  std::string line =
      text(atspi_accessible_get_role_name(object, nullptr)) + ": " + text(atspi_accessible_get_name(object, nullptr));
  const std::string description = text(atspi_accessible_get_description(object, nullptr));
  if (!description.empty()) line += " (" + description + ")";
  AtspiStateSet* states = atspi_accessible_get_state_set(object);
  const auto is = [states](AtspiStateType state) { return atspi_state_set_contains(states, state) != 0; };
  if (is(ATSPI_STATE_CHECKED) || is(ATSPI_STATE_SELECTED)) line += " *";
  g_object_unref(states);
  return line;
}

// A desk with a screen reader's ways about it. One for all tests: a program can look at one bus only.
struct AccessibleTest : testing::Test {
  static void SetUpTestSuite() {
    desk.emplace(section("UN", slope, "T:un") + section("DEUX", corner, "C:Fermer"));
    bus = stage::start_bus({"GSETTINGS_BACKEND=memory", "XDG_RUNTIME_DIR=" + desk->path("run")});
    ASSERT_EQ(setenv("DBUS_SESSION_BUS_ADDRESS", bus.read_line().c_str(), 1), 0);
    stage::Process switched_on({"dbus-send", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
                                "org.freedesktop.DBus.Properties.Set", "string:org.a11y.Status", "string:IsEnabled",
                                "variant:boolean:true"});
    ASSERT_EQ(switched_on.wait(), 0);
    ASSERT_EQ(atspi_init(), 0);
    AtspiEventListener* listener = atspi_event_listener_new(hear, nullptr, nullptr);
    for (const char* kind : {"object:property-change:accessible-name", "object:state-changed"}) {
      ASSERT_TRUE(atspi_event_listener_register(listener, kind, nullptr));
    }
    desk->start();
    const Object screen = own(atspi_get_desktop(0));
    ASSERT_TRUE(eventually([&] {
      atspi_accessible_clear_cache(screen.get());
      program = own(atspi_accessible_get_child_at_index(screen.get(), 0, nullptr));
      return program != nullptr && describe(program.get()).starts_with("application: Strokemind");
    }));
    atspi_accessible_set_cache_mask(program.get(), ATSPI_CACHE_NONE);
  }
  static void TearDownTestSuite() {
    press("push button: Terminer l'application");
    desk->expect_end();
    program.reset();
    focused.reset();
    desk.reset();
    bus.end();
  }

  // What has a name below an object, in its order.
  static std::vector<std::pair<Object, std::string>> below(const Object& from) {
    std::vector<std::pair<Object, std::string>> found;
    const int count = atspi_accessible_get_child_count(from.get(), nullptr);
    for (int n = 0; n < count; ++n) {
      const Object child = own(atspi_accessible_get_child_at_index(from.get(), n, nullptr));
      if (child == nullptr) continue;
      if (const std::string line = describe(child.get()); !line.ends_with(": ")) found.emplace_back(child, line);
      std::ranges::copy(below(child), std::back_inserter(found));
    }
    return found;
  }
  // Whether so many objects come to be there whose lines begin like this.
  static bool shows(const std::string& start, std::ptrdiff_t times = 1) {
    return eventually([&] {
      const auto is = [&](const auto& each) { return each.second.starts_with(start); };
      return std::ranges::count_if(below(program), is) == times;
    });
  }
  static void press(const std::string& line) {
    ASSERT_TRUE(shows(line)) << line;
    for (const auto& [object, each] : below(program)) {
      if (!each.starts_with(line)) continue;
      AtspiAction* action = atspi_accessible_get_action_iface(object.get());
      ASSERT_NE(action, nullptr) << line;
      EXPECT_EQ(text(atspi_action_get_action_name(action, 0, nullptr)), "Press");
      EXPECT_TRUE(atspi_action_do_action(action, 0, nullptr));
      g_object_unref(action);
    }
  }
  static void hear(AtspiEvent* event, void* /*data*/) {
    const std::string type = event->type;
    if (type == "object:state-changed:focused" && event->detail1 != 0) {
      focused = own(static_cast<AtspiAccessible*>(g_object_ref(event->source)));
    }
    heard.emplace_back(type, own(static_cast<AtspiAccessible*>(g_object_ref(event->source))));
    g_boxed_free(ATSPI_TYPE_EVENT, event);
  }
  // Whether something like this has been told since the program started.
  static bool hears(const std::string& start) {
    return eventually([&] {
      focus();
      return std::ranges::any_of(told, [&](const std::string& each) { return each.starts_with(start); });
    });
  }
  static std::string focus() {
    while (g_main_context_iteration(nullptr, 0) != 0) continue;
    // Not where it was heard: that may have been inside another question, and the library loses names over that.
    for (; !heard.empty(); heard.pop_front())
      told.push_back(heard.front().first + " " + describe(heard.front().second.get()));
    return focused != nullptr ? describe(focused.get()) : "";
  }
  static void expect_focus(const std::string& line) {
    EXPECT_TRUE(eventually([&] { return focus() == line; })) << focus() << " in place of " << line;
  }
  static void type(unsigned long key, const std::string& line) {
    desk->user.type(key);
    expect_focus(line);
  }
  // Goes from stop to stop until that one is reached or the tour begins anew; gives the stops.
  static Lines tab_to(const std::string& line) {
    Lines stops;
    do {
      const std::string before = focus();
      desk->user.type(XK_Tab);
      EXPECT_TRUE(eventually([&] { return focus() != before; })) << "stuck at " << before;
      stops.push_back(focus());
    } while (stops.back() != line && std::ranges::count(stops, stops.back()) == 1);
    EXPECT_EQ(stops.back(), line);
    return stops;
  }

  static inline std::optional<Desk> desk;
  static inline stage::Process bus;
  static inline Object program, focused;
  static inline std::deque<std::pair<std::string, Object>> heard;  // and not yet told
  static inline Lines told;
};

TEST_F(AccessibleTest, PressesDoWhatClicksDoAndChangesAreTold) {
  Lines lines;
  for (const auto& each : below(program)) lines.push_back(each.second);
  EXPECT_THAT(lines, ElementsAre("frame: Strokemind", "panel: Barre de titre", "push button: Terminer l'application",
                                 "label: STROKE-MIND", "push button: Cacher l'application", "list: Patrons",
                                 "list item: UN (T:un)", "list item: DEUX (C:Fermer)", "image: Défilement horizontal",
                                 "panel: Barre d'état", "label: 2", "push button: Patron(s), enregistrer sur fichier",
                                 "push button: À propos", "push button: Aide", "push button: Affichage: grandes icônes",
                                 "push button: Affichage: petites icônes", "push button: Affichage: liste",
                                 "push button: Affichage: détails", "image: Miniature du dernier dessin",
                                 "push button: Supprimer le patron", "push button: Enregistrer le dessin"));
  press("push button: Affichage: détails");
  EXPECT_TRUE(shows("table cell: C:Fermer"));
  press("push button: Affichage: grandes icônes");
  EXPECT_TRUE(shows("list item: DEUX"));
  press("push button: Aide");
  EXPECT_TRUE(hears("object:state-changed:showing notification: Aide de Strokemind Cliquez sur le texte"));
  press("push button: Aide");
  EXPECT_TRUE(shows("notification", 0));
  desk->hover(4750, 100);
  EXPECT_TRUE(hears("object:property-change:accessible-name status bar: Cacher l'application"));
  std::filesystem::remove(desk->profile_path());
  press("push button: Patron(s)");
  EXPECT_TRUE(eventually([] { return contents(desk->profile_path()).find("[DEUX]") != std::string::npos; }));
  press("push button: Enregistrer le dessin");  // waits in a box for a name, and who has pressed does not
  press("push button: Annuler");
  EXPECT_TRUE(shows("push button: Annuler", 0));
}

TEST_F(AccessibleTest, TheKeyboardAloneReachesEverything) {
  type(XK_Down, "list item: UN (T:un) *");
  EXPECT_EQ(tab_to("push button: Cacher l'application").size(), 11U);
  type(XK_Tab, "list item: UN (T:un) *");
  type(XK_Return, "text: Texte à taper");  // which holds what is bound
  tab_to("radio button: Texte *");
  type(XK_space, "text: Texte à taper");
  desk->write("salut");
  type(XK_Return, "list item: UN (T:salut) *");

  type(XK_Down, "list item: DEUX (C:Fermer) *");
  type(XK_Return, "frame: Actions:");
  tab_to("radio button: Commandes *");
  desk->user.type(XK_space);
  EXPECT_TRUE(shows("radio button: Fermer *"));
  tab_to("radio button: Couper");
  type(XK_Return, "list item: DEUX (C:Couper) *");

  type(XK_Return, "frame: Actions:");
  tab_to("push button: Supprimer l'action");
  type(XK_space, "push button: Oui");
  type(XK_Return, "push button: Supprimer l'action");
  EXPECT_TRUE(shows("list item: DEUX *"));
  tab_to("radio button: Programmes/logiciels");
  type(XK_space, "text: Chemin du programme");
  desk->write("xterm");
  type(XK_Return, "list item: DEUX (P:xterm) *");
}

}  // namespace
