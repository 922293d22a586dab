// A window that takes the keyboard and writes one line for each key that goes down:
//   MODIFIERS KEYSYM TEXT     the state as digits of hexadecimal, the name, what it types (empty for nothing)
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
  const char* const name = XKeysymToString(symbol);
  std::printf("%x %s %s\n", event.state & 0xff, name != nullptr ? name : "none", printable ? text : "");
}

class Listener {
 public:
  Listener(Display* display, std::string_view behaviour) : display_(display), lazy_(behaviour == "lazy") {
    XIM method = XOpenIM(display, nullptr, nullptr, nullptr);
    context_ = XCreateIC(method, XNInputStyle, XIMPreeditNothing | XIMStatusNothing, XNClientWindow, window_, nullptr);
    if (behaviour != "deaf") XSetWMProtocols(display, window_, &ping_, 1);
    XSelectInput(display, window_, KeyPressMask | KeyReleaseMask | ExposureMask | FocusChangeMask);
    XMapWindow(display, window_);
  }

  void take_events() {
    while (XPending(display_) > 0) {
      XEvent event;
      XNextEvent(display_, &event);
      events_.push_back(event);
      const bool is_key = event.type == KeyPress || event.type == KeyRelease || event.type == MappingNotify;
      if (!lazy_ || !is_key) serve_events();
    }
  }

  // What had been sent before the question is told before the answer.
  void answer() {
    XSync(display_, False);
    take_events();
    serve_events();
    std::puts("so far");
  }

 private:
  void serve_events() {
    for (; !events_.empty(); events_.pop_front()) serve(events_.front());
  }

  void serve(XEvent& event) {
    if (XFilterEvent(&event, None) != 0) return;
    if (event.type == MappingNotify) XRefreshKeyboardMapping(&event.xmapping);
    if (event.type == KeyPress) tell(context_, event.xkey);
    if (event.type == FocusIn) std::puts("ready");
    if (event.type == Expose) XSetInputFocus(display_, window_, RevertToParent, CurrentTime);
    if (event.type == ClientMessage && static_cast<Atom>(event.xclient.data.l[0]) == ping_) {
      event.xclient.window = root_;
      XSendEvent(display_, root_, False, SubstructureNotifyMask | SubstructureRedirectMask, &event);
    }
  }

  Display* const display_;
  const bool lazy_;
  const Window root_ = DefaultRootWindow(display_);
  const Window window_ = XCreateSimpleWindow(display_, root_, 0, 0, 200, 100, 0, 0, 0);
  Atom ping_ = XInternAtom(display_, "_NET_WM_PING", False);
  XIC context_ = nullptr;
  std::deque<XEvent> events_;
};

}  // namespace

int main(int count, char** arguments) {
  std::setlocale(LC_ALL, "C.UTF-8");
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  Display* const display = XOpenDisplay(nullptr);
  if (display == nullptr || count != 2) return 1;
  XSetLocaleModifiers("@im=none");
  Listener listener(display, arguments[1]);
  pollfd sources[] = {{ConnectionNumber(display), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
  while (true) {
    listener.take_events();
    poll(sources, 2, -1);
    if (sources[1].revents != 0) {
      char request[16];
      if (read(STDIN_FILENO, request, sizeof request) <= 0) return 0;
      listener.answer();
    }
  }
}
