// A window that takes the keyboard and writes one line for each key that goes down:
//   MODIFIERS KEYSYM TEXT     the state as digits of hexadecimal, the name, what it types (empty for nothing)
// "ready" comes first. A line on the standard input makes it write "so far". The argument "ping" makes it answer those
// who ask whether it lives.
#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <poll.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstring>

namespace {

void tell(XIC context, XKeyEvent& event) {
  char text[64] = {};
  KeySym symbol = NoSymbol;
  Status status = 0;
  const int length = Xutf8LookupString(context, &event, text, sizeof text - 1, &symbol, &status);
  const bool printable = length > 0 && static_cast<unsigned char>(text[0]) >= ' ' && text[0] != '\x7f';
  const char* const name = XKeysymToString(symbol);
  std::printf("%x %s %s\n", event.state & 0xff, name != nullptr ? name : "none", printable ? text : "");
}

}  // namespace

int main(int count, char** arguments) {
  std::setlocale(LC_ALL, "C.UTF-8");
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  Display* const display = XOpenDisplay(nullptr);
  if (display == nullptr) return 1;
  XSetLocaleModifiers("@im=none");
  const Window root = DefaultRootWindow(display);
  const Window window = XCreateSimpleWindow(display, root, 0, 0, 200, 100, 0, 0, 0);
  XIM method = XOpenIM(display, nullptr, nullptr, nullptr);
  XIC context = XCreateIC(method, XNInputStyle, XIMPreeditNothing | XIMStatusNothing, XNClientWindow, window, nullptr);
  if (context == nullptr) return 1;
  Atom ping = XInternAtom(display, "_NET_WM_PING", False);
  if (count > 1 && std::strcmp(arguments[1], "ping") == 0) XSetWMProtocols(display, window, &ping, 1);
  XSelectInput(display, window, KeyPressMask | KeyReleaseMask | ExposureMask | FocusChangeMask);
  XMapWindow(display, window);

  pollfd sources[] = {{ConnectionNumber(display), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
  bool asked = false;
  while (true) {
    while (XPending(display) > 0) {
      XEvent event;
      XNextEvent(display, &event);
      if (XFilterEvent(&event, None) != 0) continue;
      if (event.type == MappingNotify) XRefreshKeyboardMapping(&event.xmapping);
      if (event.type == KeyPress) tell(context, event.xkey);
      if (event.type == FocusIn) std::puts("ready");
      if (event.type == Expose) XSetInputFocus(display, window, RevertToParent, CurrentTime);
      if (event.type == ClientMessage && static_cast<Atom>(event.xclient.data.l[0]) == ping) {
        event.xclient.window = root;
        XSendEvent(display, root, False, SubstructureNotifyMask | SubstructureRedirectMask, &event);
      }
    }
    if (asked) std::puts("so far");
    asked = false;
    poll(sources, 2, -1);
    if (sources[1].revents != 0) {
      char request[16];
      if (read(STDIN_FILENO, request, sizeof request) <= 0) return 0;
      // What had been sent before the question is told before the answer.
      XSync(display, False);
      asked = true;
    }
  }
}
