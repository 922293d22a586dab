// Makes the example profile and a picture of each of its patrons, through the same sampler, normaliser and store as a
// stroke of the user.
//
// usage: make_example SOURCE-TREE       writes assets/example/ and docs/images/patrons/ of the tree
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "capture/miniature.h"
#include "forms/sk.h"
#include "model/patrons.h"
#include "platform/profile_service.h"
#include "simulation/profile_files.h"
#include "store/profil.h"
#include "tools/example/shapes.h"

namespace {

constexpr const char* profile = "Strokemind.AI";
constexpr double side = 300;    // of the strokes, pixels: as a hand draws them
constexpr double corner = 500;  // where they begin, well within what the sampler leaves in its place

Mod_dessin::Patron drawn(const example::Example& shape, SK& sk) {
  example::Corners corners = shape.corners;
  for (auto& [x, y] : corners) x = corner + x * side, y = corner + y * side;
  const auto points = hooklib::sample_stroke(example::by_hand(corners), hooklib::normal_density).value();

  Mod_dessin::Dessin dessin;
  for (std::size_t k = 0; k < points.size(); ++k) {
    dessin.dessin_x[k] = static_cast<float>(points[k].x);
    dessin.dessin_y[k] = static_cast<float>(points[k].y);
  }
  dessin.dessin_nb = static_cast<std::int16_t>(points.size());
  Mod_dessin::dessiner_miniature(dessin, sk.PicIco, sk.PicRef);

  Mod_dessin::Patron patron;
  patron.Nom = shape.name;
  patron.Action = shape.action;
  patron.Ind = dessin.dessin_nb;
  patron.X.values.assign(dessin.dessin_x.begin(), dessin.dessin_x.begin() + dessin.dessin_nb);
  patron.Y.values.assign(dessin.dessin_y.begin(), dessin.dessin_y.begin() + dessin.dessin_nb);
  return patron;
}

// One axis in the middle of a picture of 96 by 96.
std::vector<double> centred(const std::vector<double>& values, double scale) {
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  std::vector<double> moved(values.size());
  const double middle = (*least + *most) / 2;
  std::transform(values.begin(), values.end(), moved.begin(),
                 [&](double value) { return 48 + (value - middle) * scale; });
  return moved;
}

// The patron's points as a line, its start as a disc, its end as an arrow.
std::string picture(const Mod_dessin::Patron& patron) {
  const std::vector<double> x = centred(patron.X.values, 1);
  const std::vector<double> y = centred(patron.Y.values, 64.0 / 48);  // the miniature is 64 wide and 48 high
  std::string points;
  char text[128];
  for (std::size_t k = 0; k < x.size(); ++k) {
    std::snprintf(text, sizeof text, "%s%.1f,%.1f", k == 0 ? "" : " ", x[k], y[k]);
    points += text;
  }
  std::snprintf(text, sizeof text, R"(  <circle cx="%.1f" cy="%.1f" r="5" fill="#fff"/>)", x.front(), y.front());
  const std::string start = R"svg(<svg xmlns="http://www.w3.org/2000/svg" width="96" height="96" viewBox="0 0 96 96">
  <defs>
    <marker id="end" markerWidth="5" markerHeight="4" refX="2.5" refY="2" orient="auto">
      <path d="M0,0 5,2 0,4z" fill="#fff"/>
    </marker>
  </defs>
  <rect x="1" y="1" width="94" height="94" fill="#061a0c" stroke="#0f0" stroke-width="2"/>
  <polyline fill="none" stroke="#0f0" stroke-width="4" stroke-linejoin="round" marker-end="url(#end)" points=")svg";
  return start + points + "\"/>\n" + text + "\n</svg>\n";
}

bool write(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  file.close();
  if (!file) std::fprintf(stderr, "make_example: cannot write %s\n", path.c_str());
  return !file.fail();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: make_example SOURCE-TREE\n", stderr);
    return 2;
  }
  const std::string tree = argv[1];
  SK sk;
  Mod_dessin::Table table;
  bool well = true;
  for (const example::Example& shape : example::examples()) {
    Mod_dessin::Patron& patron = table.patrons[table.nb_patrons++];
    patron = drawn(shape, sk);
    well = write(tree + "/docs/images/patrons/" + shape.name + ".svg", picture(patron)) && well;
  }

  simulation::Journal journal;
  simulation::ProfileFiles files(journal);
  platform::ProfileService service(files);
  Mod_ini ini(service, profile);
  Mod_dessin::Profil(ini, sk, table).ecrire_patrons();
  return write(tree + "/assets/example/" + profile, files.files[profile]) && well ? 0 : 1;
}
