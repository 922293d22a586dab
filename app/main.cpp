// Strokemind: gestures of the right mouse button become actions.
#include "app/programme.h"
#include "desktop/desktop.h"

int main(int argc, char** argv) {
  if (!desktop::Desktop::available()) return 1;
  desktop::Desktop desktop(argc, argv);
  Programme programme(desktop.services());
  desktop.on_terminate = [&] { programme.quit(); };
  desktop.services().events.post([&] { programme.start(); });
  return desktop.run();
}
