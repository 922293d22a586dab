#include "desktop/path_completion.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QScreen>
#include <algorithm>
#include <optional>

namespace desktop {

namespace {

constexpr int most_rows_seen = 8;
constexpr int most_rows = 200;  // more of them nobody looks through

// The word of a command line that ends at the caret.
struct Word {
  int start = 0;
  int end = 0;        // behind the closing quote, where the caret stands right before that
  bool home = false;  // begins with "~/", which stands for the home folder
  QString path;       // without quotes
};

// Nothing where the word is not the beginning of a path. Words are split as platform/words.h has it.
std::optional<Word> path_before(const QString& line, int caret) {
  constexpr QChar none;
  Word word;
  QChar quote = none;
  bool within = false;
  for (int i = 0; i < caret; ++i) {
    const QChar c = line[i];
    const bool escapes = c == QLatin1Char('\\') && quote != QLatin1Char('\'') && i + 1 < caret;
    if (quote == none && c.isSpace()) {
      within = false;
      continue;
    }
    if (!within) word = {i, caret, c == QLatin1Char('~'), {}};
    within = true;
    if (c == quote) {
      quote = none;
    } else if (quote == none && (c == QLatin1Char('"') || c == QLatin1Char('\''))) {
      quote = c;
    } else {
      const bool kept = quote == none || (escapes && QStringLiteral("\"\\$`").contains(line[i + 1]));
      word.path += escapes && kept ? line[++i] : c;
    }
  }
  if (!within) return std::nullopt;
  if (quote != none && caret < line.size() && line[caret] == quote) ++word.end;
  word.home = word.home && word.path.startsWith(QLatin1String("~/"));
  if (!word.home && !word.path.startsWith(QLatin1Char('/'))) return std::nullopt;
  return word;
}

// Whether a word of a command line must be quoted to be this path.
bool needs_quotes(const QString& path) {
  return std::any_of(path.begin(), path.end(), [](QChar c) {
    return c.isSpace() || c == QLatin1Char('"') || c == QLatin1Char('\'') || c == QLatin1Char('\\');
  });
}

}  // namespace

QString quoted_path(const QString& path) {
  if (!needs_quotes(path)) return path;
  QString escaped = path;
  escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('"'), QLatin1String("\\\""));
  return QLatin1Char('"') + escaped + QLatin1Char('"');
}

PathCompletion::PathCompletion(QLineEdit& box) : QObject(&box), box_(box), list_(&box) {
  // A window that is in front and takes nothing from the one with the box: not the keyboard, so that no key is lost to
  // the program, and not the pointer.
  list_.setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint);
  list_.setAttribute(Qt::WA_ShowWithoutActivating);
  list_.setFocusPolicy(Qt::NoFocus);
  list_.setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_.setSelectionMode(QAbstractItemView::SingleSelection);
  list_.setUniformItemSizes(true);
  list_.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_.setFrameStyle(QFrame::Box | QFrame::Plain);
  list_.setItemDelegate(&painter_);
  list_.setModel(&model_);
  connect(&list_, &QListView::clicked, this, [this](const QModelIndex& index) { choose(index.data().toString()); });
  connect(&box, &QLineEdit::textEdited, this, [this] { offer(); });
  connect(&box, &QLineEdit::cursorPositionChanged, this, [this] {
    if (box_.cursorPosition() != cursor_) close();
  });
}

void PathCompletion::dress(const QColor& ink, const QColor& ground, const QFont& font) {
  list_.setFont(font);
  painter_.set_look({ink, ground, {}, {1, QFontMetrics(font).height() + 4}, false, 1});
  QPalette colours = list_.palette();
  for (const auto role : {QPalette::Base, QPalette::Window}) colours.setColor(role, ground);
  for (const auto role : {QPalette::Text, QPalette::WindowText}) colours.setColor(role, ink);
  list_.setPalette(colours);
}

bool PathCompletion::takes(const QKeyEvent& key) {
  if (list_.isHidden() || key.modifiers().testFlag(Qt::ControlModifier)) return false;
  switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      // Confirms what was typed, unless the user has gone to a name: a folder too is a path to confirm.
      if (!list_.currentIndex().isValid()) {
        close();
        return false;
      }
      choose(list_.currentIndex().data().toString());
      return true;
    case Qt::Key_Tab:
      if (!list_.currentIndex().isValid()) move(1);
      choose(list_.currentIndex().data().toString());
      return true;
    case Qt::Key_Escape:
      close();
      return true;
    case Qt::Key_Up:
      move(-1);
      return true;
    case Qt::Key_Down:
      move(1);
      return true;
    case Qt::Key_PageUp:
      move(1 - most_rows_seen);
      return true;
    case Qt::Key_PageDown:
      move(most_rows_seen - 1);
      return true;
    default:
      return false;
  }
}

void PathCompletion::move(int rows) {
  const int last = model_.rowCount() - 1;
  list_.setCurrentIndex(model_.index(std::clamp(list_.currentIndex().row() + rows, 0, last)));
}

void PathCompletion::close() {
  if (list_.isHidden()) return;
  list_.hide();
  folder_.clear();
  qApp->removeEventFilter(this);
}

void PathCompletion::list(const QString& folder) {
  if (folder == folder_) return;
  folder_ = folder;
  names_ =
      QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
}

// Opens the list for what stands before the caret, or closes it where nothing goes on from there.
void PathCompletion::offer() {
  cursor_ = box_.cursorPosition();
  const auto word = path_before(box_.text(), cursor_);
  if (!word) {
    close();
    return;
  }
  const qsizetype name_at = word->path.lastIndexOf(QLatin1Char('/')) + 1;
  const QString begun = word->path.mid(name_at);
  start_ = word->start;
  end_ = word->end;
  typed_folder_ = word->path.left(name_at);
  list(word->home ? QDir::homePath() + typed_folder_.mid(1) : typed_folder_);
  QStringList names;
  for (const QString& name : names_) {
    const bool hidden = name.startsWith(QLatin1Char('.')) && begun.isEmpty();
    if (hidden || !name.startsWith(begun, Qt::CaseInsensitive)) continue;
    names << (QFileInfo(folder_ + name).isDir() ? name + QLatin1Char('/') : name);
    if (names.size() == most_rows) break;
  }
  if (names.isEmpty() || (names.size() == 1 && names.front() == begun)) {
    close();
  } else {
    place(names);
  }
}

// Under the box, or over it where the screen ends.
void PathCompletion::place(const QStringList& names) {
  model_.setStringList(names);
  list_.setCurrentIndex({});
  list_.scrollToTop();
  const QFontMetrics metrics(list_.font());
  int widest = 0;
  for (const QString& name : names) widest = std::max(widest, metrics.horizontalAdvance(name));
  const int rows = std::min(static_cast<int>(names.size()), most_rows_seen);
  const int frame = 2 * list_.frameWidth();
  const QRect screen = box_.screen()->availableGeometry();
  const QSize size(
      std::clamp(widest + 4 * RowPainter::gap + frame, box_.width(), std::max(box_.width(), screen.width() / 2)),
      rows * list_.sizeHintForRow(0) + frame);
  QPoint corner = box_.mapToGlobal(QPoint(0, box_.height()));
  if (corner.y() + size.height() > screen.bottom()) corner.ry() -= box_.height() + size.height();
  corner.setX(std::max(screen.left(), std::min(corner.x(), screen.right() - size.width())));
  list_.setGeometry(QRect(corner, size));
  if (!list_.isHidden()) return;
  list_.show();
  qApp->installEventFilter(this);
}

// Puts a name into the box, where undoing takes it back. Behind a folder one types on, inside of its quotes.
void PathCompletion::choose(const QString& name) {
  const QString path = folder_ + name;
  close();
  const QString plain = typed_folder_ + name;
  // In quotes "~" would be a file of that name.
  const QString word = needs_quotes(plain) || !typed_folder_.startsWith(QLatin1Char('~')) ? quoted_path(path) : plain;
  box_.setSelection(start_, end_ - start_);
  box_.insert(word);
  if (name.endsWith(QLatin1Char('/')) && word.endsWith(QLatin1Char('"'))) box_.cursorBackward(false);
}

// While the list is open: it goes with the box, and when the user turns to anything else.
bool PathCompletion::eventFilter(QObject* watched, QEvent* event) {
  const bool of_box = watched == &box_ || watched == box_.window();
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      if (watched->isWidgetType() && static_cast<QWidget*>(watched)->window() != &list_) close();
      break;
    case QEvent::FocusOut:
    case QEvent::Hide:
    case QEvent::Move:
      if (of_box) close();
      break;
    default:
      break;
  }
  return false;
}

}  // namespace desktop
