// What the main window's own work costs: rebuilding the list from a full table, a frame of the About panel's mosaic,
// and a step of the rolling help, each drawn with the program's own face on a screen of scale 1.
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

#include "desktop/fonts.h"
#include "desktop/painting.h"
#include "effects/mod_matrix.h"
#include "effects/mod_scroll.h"
#include "forms/mod_fenetre.h"
#include "simulation/desktop_in_memory.h"
#include "store/liste.h"

namespace {

constexpr int patrons = 99;
constexpr int points = 500;
constexpr int rounds = 101;

double cpu_ms() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// Medians and maxima of the CPU time of `work`.
template <class Work>
void measure(const char* what, double limit, const Work& work) {
  std::vector<double> times;
  for (int n = 0; n < rounds; ++n) {
    const double start = cpu_ms();
    work();
    times.push_back(cpu_ms() - start);
  }
  std::sort(times.begin(), times.end());
  std::printf("%-46s median %6.3f ms   max %6.3f ms   (limit %.1f)\n", what, times[rounds / 2], times.back(), limit);
}

void fill(Mod_dessin::Table& table) {
  for (std::size_t s = 0; s < patrons; ++s) {
    Mod_dessin::Patron& patron = table.patrons[s];
    patron.Nom = "PATRON" + std::to_string(s);
    patron.Ind = points;
    for (std::size_t k = 0; k < points; ++k) {
      patron.X.values.push_back(static_cast<double>(k * (s + 3) % 641) / 10);
      patron.Y.values.push_back(static_cast<double>(k * (s + 7) % 481) / 10);
    }
  }
  table.nb_patrons = patrons;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  simulation::DesktopInMemory simulated;
  desktop::DesktopFonts fonts;
  platform::Services& memory = simulated.services;
  platform::Services services{memory.clock,   memory.events,  memory.windows, memory.input, memory.shell,
                              memory.profile, memory.dialogs, fonts,          memory.hooks, memory.program};
  if (fonts.AddFontResourceA(PROGRAM_FOLDER "/OCRAEXT.TTF") < 1) return 1;
  SK sk;
  Mod_dessin::charger_police(services, sk);

  Mod_dessin::Table table;
  fill(table);
  measure("list of 99 patrons of 500 points, rebuilt:", 10, [&] { Mod_dessin::rebatir_vignettes(sk, table); });

  // What the window itself adds: the panel painted once.
  QImage window(330, 192, QImage::Format_ARGB32_Premultiplied);
  const auto paint = [&] {
    QPainter painter(&window);
    desktop::paint_canvas(painter, sk.Pictxt.canvas);
  };
  Mod_Matrix matrix(services, sk);
  measure("mosaic frame of 2442 cells, painted:", 4, [&] {
    matrix.dessiner_mosaique();
    paint();
  });

  sk.Pictxt.Cls();
  sk.Pictxt.ForeColor = vert;
  sk.Pictxt.ScaleMode = platform::scale_pixels;
  Mod_Scroll scroll(services, sk.Pictxt);
  scroll.preparer(sk.Texte.Text);
  measure("step of the rolling help, painted:", 0.5, [&] {
    // Four rounds of 10 ms make a step.
    for (int round = 0; round < 4; ++round) scroll.defiler_aide();
    paint();
  });
  return 0;
}
