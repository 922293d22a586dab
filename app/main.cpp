// Strokemind: gestures of the right mouse button become actions.
#include <cstdio>
#include <string_view>

#include "app/programme.h"
#include "desktop/desktop.h"

namespace {

constexpr const char* usage =
    "Usage : strokemind [--help | --version]\n"
    "Maintenez le bouton droit n'importe où sur l'écran, dessinez, relâchez.\n";

// The exit status, once there was something to be told instead of starting; -1 else.
int tell(int argc, char** argv) {
  if (argc == 1) return -1;
  const std::string_view option = argv[1];
  const bool known = argc == 2 && (option == "--help" || option == "--version");
  if (known && option == "--version") {
    std::puts("Strokemind " STROKEMIND_VERSION);
  } else {
    std::fputs(usage, known ? stdout : stderr);
  }
  return known ? 0 : 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (const int status = tell(argc, argv); status >= 0) return status;
  if (!desktop::Desktop::available()) return 1;
  desktop::Desktop desktop(argc, argv);
  Programme programme(desktop.services());
  desktop.on_terminate = [&] { programme.quit(); };
  desktop.services().events.post([&] { programme.start(); });
  return desktop.run();
}
