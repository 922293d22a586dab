// How well strokes are recognised: published gestures through the real sampler, normaliser and verdict.
//
// usage: recognition_study [GESTURES]      (or the path in the variable STROKEMIND_GESTURES)
//
// One template per shape is drawn at random from one person at one speed, and the person's other strokes at that speed
// are judged against the templates: right, wrong or rejected. Then each shape in turn is not taught, and its strokes
// are judged against the templates of the others: how often does a stranger run an action? Fails below the figures that
// the sampler was chosen for.
//
// A line of GESTURES is one stroke: subject speed shape repetition n  x y t  x y t ..., x and y in pixels, t in
// milliseconds since the first point. Strokes are fed where they were drawn; the sampler moves those that lie too
// near the origin, and beyond that the normaliser knows no position.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "capture/miniature.h"
#include "forms/sk.h"
#include "hooklib/sampler.h"
#include "model/patrons.h"
#include "recognition/verdict.h"

namespace {

using Mod_dessin::Dessin;

constexpr int draws = 100;
constexpr std::uint32_t seed = 20240101;
// The least that the sampler must keep to. Raw events of a fast mouse give 35 % right and 84 % of strangers accepted.
constexpr double least_right = 95.3;            // percent of the strokes of taught shapes
constexpr double most_strangers_accepted = 71;  // percent of the strokes of shapes not taught

// The strokes of one person at one speed: for each shape its repetitions, normalised.
using Group = std::map<std::string, std::vector<Dessin>>;
using Groups = std::map<std::pair<std::string, std::string>, Group>;

struct Loaded {
  Groups groups;
  int strokes = 0;
  int clicks = 0;   // too small to be a stroke
  int moved = 0;    // too near the origin on an axis
  int damaged = 0;  // lines that are not of the form above
};

// The stroke as the program would hold it after the hook's report and the normaliser.
Dessin normalised(const std::vector<point_hook>& points, SK& sk) {
  Dessin dessin;
  for (std::size_t i = 0; i < points.size(); ++i) {
    dessin.dessin_x[i] = static_cast<float>(points[i].x);
    dessin.dessin_y[i] = static_cast<float>(points[i].y);
  }
  dessin.dessin_nb = static_cast<std::int16_t>(points.size());
  Mod_dessin::dessiner_miniature(dessin, sk.PicIco, sk.PicRef);
  return dessin;
}

Loaded load(std::istream& in) {
  Loaded loaded;
  SK sk;
  std::string line;
  while (std::getline(in, line)) {
    std::istringstream fields(line);
    std::string subject;
    std::string speed;
    std::string shape;
    int repetition = 0;
    std::size_t count = 0;
    fields >> subject >> speed >> shape >> repetition >> count;
    std::vector<hooklib::Sample> events;
    hooklib::Sample event{};
    while (fields >> event.x >> event.y >> event.time_ms) events.push_back(event);
    if (events.empty() || events.size() != count) {
      ++loaded.damaged;
      continue;
    }
    const auto points = hooklib::sample_stroke(events, hooklib::normal_density);
    if (!points) {
      ++loaded.clicks;
      continue;
    }
    ++loaded.strokes;
    if (points->front().x != events.front().x || points->front().y != events.front().y) ++loaded.moved;
    loaded.groups[{subject, speed}][shape].push_back(normalised(*points, sk));
  }
  return loaded;
}

void teach(Mod_dessin::Table& table, const std::string& name, const Dessin& dessin) {
  Mod_dessin::Patron& patron = table.patrons[table.nb_patrons++];
  patron.Nom = name;
  patron.X.values.assign(dessin.dessin_x.begin(), dessin.dessin_x.end());
  patron.Y.values.assign(dessin.dessin_y.begin(), dessin.dessin_y.end());
  patron.Ind = dessin.dessin_nb;
}

struct Counts {
  std::int64_t right = 0;
  std::int64_t wrong = 0;
  std::int64_t rejected = 0;
  std::int64_t strangers = 0;
  std::int64_t strangers_accepted = 0;

  void operator+=(const Counts& other) {
    right += other.right;
    wrong += other.wrong;
    rejected += other.rejected;
    strangers += other.strangers;
    strangers_accepted += other.strangers_accepted;
  }
  std::int64_t known() const { return right + wrong + rejected; }
};

// One draw: a template for each shape, and every other stroke judged with and without its own shape's template.
Counts judge(const Group& group, std::mt19937& random) {
  std::map<std::string, std::size_t> drawn;
  for (const auto& [shape, strokes] : group) drawn[shape] = random() % strokes.size();
  Mod_dessin::Table all;
  for (const auto& [shape, index] : drawn) teach(all, shape, group.at(shape)[index]);

  Counts counts;
  for (const auto& [shape, strokes] : group) {
    Mod_dessin::Table others;
    for (const auto& [name, index] : drawn) {
      if (name != shape) teach(others, name, group.at(name)[index]);
    }
    for (std::size_t i = 0; i < strokes.size(); ++i) {
      if (i == drawn.at(shape)) continue;
      const auto known = Mod_dessin::verdict(strokes[i], all, all.nb_patrons);
      ++(!known.match() ? counts.rejected : known.nom == shape ? counts.right : counts.wrong);
      const auto stranger = Mod_dessin::verdict(strokes[i], others, others.nb_patrons);
      ++counts.strangers;
      if (stranger.match()) ++counts.strangers_accepted;
    }
  }
  return counts;
}

double percent(std::int64_t part, std::int64_t whole) {
  return 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

void print(const std::string& what, const Counts& counts) {
  std::cout << std::left << std::setw(8) << what << std::right << std::fixed << std::setprecision(2) << std::setw(9)
            << percent(counts.right, counts.known()) << std::setw(9) << percent(counts.wrong, counts.known())
            << std::setw(10) << percent(counts.rejected, counts.known()) << std::setw(20)
            << percent(counts.strangers_accepted, counts.strangers) << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  const char* named = argc > 1 ? argv[1] : std::getenv("STROKEMIND_GESTURES");
  const std::string path = named != nullptr ? named : DEFAULT_DATA;
  std::ifstream in(path);
  if (!in) {
    std::cout << "recognition_study: skipped, no gestures at " << path << '\n';
    return named != nullptr ? 1 : 0;
  }
  const Loaded loaded = load(in);
  std::cout << loaded.strokes << " strokes, " << loaded.moved << " of them moved away from the origin; "
            << loaded.clicks << " clicks, " << loaded.damaged << " lines left out\n"
            << draws << " draws, seed " << seed << ", threshold " << Mod_dessin::seuil << "; all figures in percent\n\n"
            << "speed      right    wrong  rejected  strangers accepted\n";
  if (loaded.strokes == 0) return 1;

  std::map<std::string, Counts> by_speed;
  Counts total;
  std::mt19937 random(seed);
  for (int draw = 0; draw < draws; ++draw) {
    for (const auto& [who, group] : loaded.groups) {
      const Counts counts = judge(group, random);
      by_speed[who.second] += counts;
      total += counts;
    }
  }
  for (const auto& [speed, counts] : by_speed) print(speed, counts);
  print("all", total);

  const bool good = percent(total.right, total.known()) >= least_right &&
                    percent(total.strangers_accepted, total.strangers) <= most_strangers_accepted;
  if (!good) std::cout << "\nworse than " << least_right << " right or " << most_strangers_accepted << " accepted\n";
  return good ? 0 : 1;
}
