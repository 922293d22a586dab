#include "desktop/fonts.h"

#include <QFontDatabase>
#include <QStringList>

namespace desktop {

int DesktopFonts::AddFontResourceA(std::string_view path) {
  if (const auto found = known_.find(path); found != known_.end()) return found->second;
  const int id = QFontDatabase::addApplicationFont(QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size())));
  if (id < 0) return 0;
  const auto faces = static_cast<int>(QFontDatabase::applicationFontFamilies(id).size());
  known_.emplace(path, faces);
  return faces;
}

}  // namespace desktop
