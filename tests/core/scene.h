// The whole program on the desktop in memory, with a profile to start from.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "app/programme.h"
#include "capture/miniature.h"
#include "platform/number.h"
#include "platform/text.h"
#include "simulation/desktop_in_memory.h"

inline constexpr const char* profile_name = "Strokemind.AI";

// 32 points along a path of straight lines, at equal steps, as the hook library delivers a stroke.
inline std::vector<point_hook> along(const std::vector<point_hook>& corners) {
  constexpr int points = 32;
  std::vector<double> ends{0};
  for (std::size_t n = 1; n < corners.size(); ++n) {
    ends.push_back(ends.back() + std::hypot(corners[n].x - corners[n - 1].x, corners[n].y - corners[n - 1].y));
  }
  std::vector<point_hook> stroke;
  std::size_t leg = 1;
  for (int k = 0; k < points; ++k) {
    const double at = ends.back() * k / (points - 1);
    while (leg + 1 < corners.size() && ends[leg] < at) ++leg;
    const double part = (at - ends[leg - 1]) / (ends[leg] - ends[leg - 1]);
    const auto between = [&](int from, int to) { return platform::round_half_even(from + (to - from) * part); };
    stroke.push_back({between(corners[leg - 1].x, corners[leg].x), between(corners[leg - 1].y, corners[leg].y)});
  }
  return stroke;
}

// The section of a patron that was saved from `stroke`.
inline std::string section(const std::string& name, const std::vector<point_hook>& stroke, const std::string& action) {
  SK sk;
  Mod_dessin::Dessin dessin;
  for (std::size_t k = 0; k < stroke.size(); ++k) {
    dessin.dessin_x[k] = static_cast<float>(stroke[k].x);
    dessin.dessin_y[k] = static_cast<float>(stroke[k].y);
  }
  dessin.dessin_nb = static_cast<std::int16_t>(stroke.size());
  Mod_dessin::dessiner_miniature(dessin, sk.PicIco, sk.PicRef);
  const auto list = [&](const auto& values) {
    std::string text;
    for (std::size_t k = 0; k < stroke.size(); ++k) text += "." + platform::float_text(values[k]);
    return text;
  };
  return "[" + name + "]\r\nInd=" + std::to_string(stroke.size()) + "\r\nX=" + list(dessin.dessin_x) +
         "\r\nY=" + list(dessin.dessin_y) + "\r\nActionassocié=" + action + "\r\n";
}

// Strokes in screen pixels that the patrons below recognise.
inline const std::vector<point_hook> draw_l = along({{100, 100}, {100, 300}, {300, 300}});
inline const std::vector<point_hook> draw_slope = along({{300, 100}, {100, 200}});

// Three patrons: an L bound to a text, a bar without an action, a slanted line bound to a program.
inline const std::string three_patrons = platform::to_cp1252(
    section("EQUERRE", draw_l, "T:Bonjour") + "[BARRE]\r\nInd=3\r\nX=.0.32.64\r\nY=.0.-0,1875.0\r\nActionassocié=\r\n" +
    section("PENTE", draw_slope, "P:/usr/bin/xterm") + "[Pos]\r\nX=3450\r\nY=1200\r\n");

// A profile of `count` patrons of one point, P1, P2...
inline std::string many_patrons(int count) {
  std::string text;
  for (int n = 1; n <= count; ++n) text += "[P" + std::to_string(n) + "]\r\nInd=1\r\nX=.0\r\nY=.0\r\n";
  return text;
}

struct Scene {
  explicit Scene(const std::string& profile = three_patrons) {
    if (!profile.empty()) desktop.files.files[profile_name] = profile;
    desktop.cursor = {1500, 900};
  }
  void start() {
    programme.start();
    desktop.DoEvents();
  }
  void draw(const std::vector<point_hook>& stroke) { desktop.draw(programme.sk(), stroke); }
  void key(int direction, int code) {
    desktop.report(programme.sk(), direction, code);
    desktop.DoEvents();
  }
  // Calls a handler as a desktop does, which lets it unload the form that holds it, and serves what it leaves waiting.
  template <class Handler, class... Arguments>
  void fire(const Handler& handler, Arguments&&... arguments) {
    const Handler copy = handler;
    copy(std::forward<Arguments>(arguments)...);
    desktop.DoEvents();
  }
  // The user picks a row of the list.
  void pick(int row) {
    programme.sk().LV.select(row);
    fire(programme.sk().LV.ItemClick, row);
  }
  void click(int bouton) { fire(programme.sk().Bouton(bouton).Click); }
  // The names in the first column.
  std::vector<std::string> rows() {
    std::vector<std::string> names;
    for (int row = 1; row <= programme.sk().LV.Count(); ++row) names.push_back(programme.sk().LV.row(row).Text);
    return names;
  }
  std::string info() { return programme.sk().lblinfo.Caption; }
  std::string saved() { return desktop.files.files[profile_name]; }
  std::vector<std::string> journal(std::string_view start) { return desktop.journal.matching(start); }

  simulation::DesktopInMemory desktop;
  Programme programme{desktop.services};
};
