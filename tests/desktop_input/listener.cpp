// A window that takes the keyboard and writes one line for each key that goes down: "^" for a modifier, else
//   MODIFIERS KEYSYM TEXT     the state as digits of hexadecimal, the name, and what it types if anything
// "ready" comes first. A line on the standard input makes it write "so far". Its argument is how it behaves: "deaf", or
// "pings" if it answers those who ask whether it lives, or "lazy" if on top it reads its keys only when asked anything.
#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <poll.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <deque>
#include <string_view>

namespace {

void tell(XIC context, XKeyEvent& event) {
  char text[64] = {};
  KeySym symbol = NoSymbol;
  Status status = 0;
  const int length = Xutf8LookupString(context, &event, text, sizeof text - 1, &symbol, &status);
  const bool printable = length > 0 && static_cast<unsigned char>(text[0]) >= ' ' && text[0] != '\x7f';
  const char* const name = symbol != NoSymbol ? XKeysymToString(symbol) : "none";
  if (IsModifierKey(symbol) && symbol != XK_Caps_Lock) {
    std::puts("^");
  } else {
    std::printf("%x %s%s%s\n", event.state & 0xff, name, printable ? " " : "", printable ? text : "");
  }
}

}  // namespace

int main(int count, char** arguments) {
  std::setlocale(LC_ALL, "C.UTF-8");
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  Display* const display = XOpenDisplay(nullptr);
  if (display == nullptr || count != 2) return 1;
  const std::string_view behaviour = arguments[1];
  XSetLocaleModifiers("@im=none");
  const Window root = DefaultRootWindow(display);
  const Window window = XCreateSimpleWindow(display, root, 0, 0, 200, 100, 0, 0, 0);
  XIC context = XCreateIC(XOpenIM(display, nullptr, nullptr, nullptr), XNInputStyle,
                          XIMPreeditNothing | XIMStatusNothing, XNClientWindow, window, nullptr);
  Atom ping = XInternAtom(display, "_NET_WM_PING", False);
  if (behaviour != "deaf") XSetWMProtocols(display, window, &ping, 1);
  XSelectInput(display, window, KeyPressMask | KeyReleaseMask | ExposureMask | FocusChangeMask);
  XMapWindow(display, window);
  const auto serve = [&](XEvent& event) {
    if (XFilterEvent(&event, None) != 0) return;
    if (event.type == MappingNotify) XRefreshKeyboardMapping(&event.xmapping);
    if (event.type == KeyPress) tell(context, event.xkey);
    if (event.type == FocusIn) std::puts("ready");
    if (event.type == Expose) XSetInputFocus(display, window, RevertToParent, CurrentTime);
    if (event.type == ClientMessage && static_cast<Atom>(event.xclient.data.l[0]) == ping) {
      event.xclient.window = root;
      XSendEvent(display, root, False, SubstructureNotifyMask | SubstructureRedirectMask, &event);
    }
  };
  std::deque<XEvent> events;
  const auto take_events = [&](bool lazy) {
    while (XPending(display) > 0) {
      XNextEvent(display, &events.emplace_back());
      const int type = events.back().type;
      if (lazy && (type == KeyPress || type == KeyRelease || type == MappingNotify)) continue;
      for (; !events.empty(); events.pop_front()) serve(events.front());
    }
    for (; !lazy && !events.empty(); events.pop_front()) serve(events.front());
  };
  pollfd sources[] = {{ConnectionNumber(display), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
  while (true) {
    take_events(behaviour == "lazy");
    poll(sources, 2, -1);
    if (sources[1].revents == 0) continue;
    char request[16];
    if (read(STDIN_FILENO, request, sizeof request) <= 0) return 0;
    // What had been sent before the question is told before the answer.
    XSync(display, False);
    take_events(false);
    std::puts("so far");
  }
}
