// Font files of the program.
#pragma once

#include <QFont>
#include <deque>
#include <map>
#include <string>
#include <unordered_map>

#include "platform/services.h"

namespace desktop {

class DesktopFonts final : public platform::Fonts {
 public:
  int AddFontResourceA(std::string_view path) override;
  const platform::Glyph& glyph(const platform::Font& font, double density, char32_t character) override;
  int line_height(const platform::Font& font) override;

 private:
  // Faces of the files that are known already: a file is asked for again each time that a window opens.
  std::map<std::string, int, std::less<>> known_;

  // One face at one density, and the characters that have been asked for. The face in use is kept at hand: a panel of
  // letters asks thousands of times for the same one.
  struct Face {
    platform::Font font;
    double density;
    QFont scaled;  // in device pixels
    int ascent;
    int line_height;  // in pixels of the design screen
    std::unordered_map<char32_t, platform::Glyph> glyphs;
  };
  Face& face_of(const platform::Font& font, double density);
  static platform::Glyph draw(const Face& face, char32_t character);
  std::deque<Face> faces_;
  Face* last_ = nullptr;
};

}  // namespace desktop
