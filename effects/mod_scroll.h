// The help text, which rolls upwards through a panel.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/drawing.h"
#include "platform/services.h"

class Mod_Scroll {
 public:
  // `Pictxt` is the panel.
  Mod_Scroll(platform::Services& services, platform::PictureBox& Pictxt) : services_(services), Pictxt_(Pictxt) {}

  // Sets the roll to its beginning: the whole panel scrolls, the text comes up from below it. The panel counts in
  // pixels.
  void preparer(const std::string& texte);

  // Rolls until defilement_actif is false or the program has ended: a pixel at a time, at most one every 31 ms of
  // ticks, letting other events run in between. So it stays within the event that called it; called again from such an
  // event it goes on from where it stands.
  void defiler_aide();

  std::vector<std::string> lignes_aide;  // the text, line by line; empty outside help
  bool defilement_actif = false;
  std::int32_t ligne_courante = 0;  // the next line to draw; survives a pause

 private:
  void avancer(std::string& ligne);

  platform::Services& services_;
  platform::PictureBox& Pictxt_;
  std::int32_t dernier_tick_ = 0;     // of the last step, ms
  platform::RECT rect_texte_{};       // where the present line is drawn, pixels of the panel
  platform::RECT rect_defilement_{};  // what scrolls
};
