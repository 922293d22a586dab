#include "desktop/input.h"

#include <X11/XKBlib.h>
#include <X11/keysym.h>

#include <optional>
#include <vector>

#include "desktop/input_keyboard.h"
#include "desktop/typist.h"
#include "platform/sendkeys.h"

namespace desktop {
namespace {

constexpr std::uint8_t key_caps_lock = 0x14;
constexpr std::uint8_t key_num_lock = 0x90;
constexpr std::uint8_t key_scroll_lock = 0x91;
constexpr std::uint8_t down_bit = 0x80;
constexpr std::uint8_t on_bit = 0x01;

}  // namespace

class DesktopInput::Session {
 public:
  explicit Session(std::unique_ptr<InputConnection> connection)
      : keyboard_(std::move(connection)),
        typist_(keyboard_),
        scroll_light_(XInternAtom(keyboard_.display(), "Scroll Lock", False)) {
    keyboard_.refresh();  // now, so that the first gesture need not wait for it
  }
  ~Session() { release_all(); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  void press(std::uint8_t key) {
    keyboard_.refresh();
    const int group = keyboard_.group();
    const auto place = place_of(key, group);
    if (!place) return;
    const bool elsewhere = place->group != group;
    if (elsewhere) keyboard_.lock_group(place->group);
    keyboard_.send(place->code, true);
    down_.push_back({key, place->code, elsewhere ? std::optional(group) : std::nullopt});
    XSync(keyboard_.display(), False);
  }

  void release(std::uint8_t key) {
    for (auto pressed = down_.begin(); pressed != down_.end();) {
      if (pressed->key != key) {
        ++pressed;
        continue;
      }
      keyboard_.send(pressed->code, false);
      if (pressed->group_before) keyboard_.lock_group(*pressed->group_before);
      pressed = down_.erase(pressed);
    }
    XSync(keyboard_.display(), False);
  }

  void release_all() {
    // The last pressed first: a letter before its Ctrl.
    while (!down_.empty()) release(down_.back().key);
  }

  void type(const std::vector<platform::Stroke>& strokes, bool wait) {
    typist_.type(strokes);
    if (wait && !strokes.empty()) keyboard_.connection().settle();
  }

  platform::KeyboardState state() {
    keyboard_.refresh();
    platform::KeyboardState state{};
    std::array<bool, 256> down{};
    for (const std::uint8_t code : keyboard_.keys_down()) down[code] = true;
    for (std::size_t key = 0; key < state.size(); ++key) {
      for (const Symbol symbol : symbols_of_key(static_cast<std::uint8_t>(key))) {
        for (const std::uint8_t code : keyboard_.keymap().codes(symbol)) {
          if (down[code]) state[key] |= down_bit;
        }
      }
    }
    XkbStateRec locks{};
    XkbGetState(keyboard_.display(), XkbUseCoreKbd, &locks);
    if ((locks.locked_mods & LockMask) != 0) state[key_caps_lock] |= on_bit;
    if ((locks.locked_mods & keyboard_.keymap().lock_modifiers(XK_Num_Lock)) != 0) state[key_num_lock] |= on_bit;
    Bool light = False;
    XkbGetNamedIndicator(keyboard_.display(), scroll_light_, nullptr, &light, nullptr, nullptr);
    if (light != False) state[key_scroll_lock] |= on_bit;
    return state;
  }

  void set_locks(const platform::KeyboardState& wanted) {
    const platform::KeyboardState present = state();
    const auto set = [&](std::uint8_t key, unsigned modifiers) {
      const bool on = (wanted[key] & on_bit) != 0;
      if (on == ((present[key] & on_bit) != 0)) return;
      if (modifiers != 0) {
        XkbLockModifiers(keyboard_.display(), XkbUseCoreKbd, modifiers, on ? modifiers : 0);
      } else if (key == key_scroll_lock) {
        XkbSetNamedIndicator(keyboard_.display(), scroll_light_, True, on ? True : False, False, nullptr);
      }
    };
    set(key_caps_lock, LockMask);
    set(key_num_lock, keyboard_.keymap().lock_modifiers(XK_Num_Lock));
    set(key_scroll_lock, keyboard_.keymap().lock_modifiers(XK_Scroll_Lock));
    XSync(keyboard_.display(), False);
  }

 private:
  struct Pressed {
    std::uint8_t key;   // virtual key code
    std::uint8_t code;  // the release goes to the key that was pressed, even if the layout has changed meanwhile
    std::optional<int> group_before;  // to be put back with the release
  };

  std::optional<KeyPlace> place_of(std::uint8_t key, int group) {
    const auto symbols = symbols_of_key(key);
    for (const Symbol symbol : symbols) {
      if (const auto place = keyboard_.find(symbol, group)) return place;
    }
    if (symbols.empty()) return std::nullopt;
    keyboard_.borrow({SpareKeys::to_borrow(symbols.front())});
    return keyboard_.find(symbols.front(), group);
  }

  Keyboard keyboard_;
  Typist typist_;
  Atom scroll_light_;
  std::vector<Pressed> down_;  // in the order of pressing
};

DesktopInput::DesktopInput() {
  if (auto connection = InputConnection::open()) session_ = std::make_unique<Session>(std::move(connection));
}

DesktopInput::~DesktopInput() = default;

void DesktopInput::keybd_event(std::uint8_t key, std::uint8_t /*scan*/, std::uint32_t flags, std::uint32_t /*extra*/) {
  if (!session_) return;
  if ((flags & platform::KEYEVENTF_KEYUP) != 0) {
    session_->release(key);
  } else {
    session_->press(key);
  }
}

void DesktopInput::SendKeys(std::string_view text, bool wait) {
  if (!session_) return;
  if (const auto strokes = platform::parse_send_keys(text)) session_->type(*strokes, wait);
}

platform::KeyboardState DesktopInput::GetKeyboardState() {
  return session_ ? session_->state() : platform::KeyboardState{};
}

void DesktopInput::SetKeyboardState(const platform::KeyboardState& state) {
  if (session_) session_->set_locks(state);
}

int DesktopInput::platform_id() {
  return platform::platform_nt;
}

void DesktopInput::release_all() {
  if (session_) session_->release_all();
}

}  // namespace desktop
