// Font files of the program.
#pragma once

#include <map>
#include <string>

#include "platform/services.h"

namespace desktop {

class DesktopFonts final : public platform::Fonts {
 public:
  int AddFontResourceA(std::string_view path) override;

 private:
  // Faces of the files that are known already: a file is asked for again each time that a window opens.
  std::map<std::string, int, std::less<>> known_;
};

}  // namespace desktop
