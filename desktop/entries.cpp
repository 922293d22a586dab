#include "desktop/entries.h"

#include <QContextMenuEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QTextBlock>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "desktop/mouse.h"
#include "desktop/pressing.h"
#include "desktop/style.h"

namespace desktop {

namespace {

// The box's colours, with the selection in reverse and a frame that shows where the box is.
QString style_of(const platform::TextBox& box, const char* widget_class) {
  return QStringLiteral(
             "%1 { background: %2; color: %3; border: 1px solid %3; padding: 0px;"
             " selection-background-color: %3; selection-color: %2; }")
      .arg(QLatin1String(widget_class), colour(box.BackColor).name(), colour(box.ForeColor).name());
}

// Restyling is slow: only where the style differs.
void set_style(QWidget& widget, const QString& style) {
  if (widget.styleSheet() != style) widget.setStyleSheet(style);
}

// The first file of this machine that is dragged; empty where there is none.
QString local_file(const QMimeData& dragged) {
  for (const QUrl& url : dragged.urls()) {
    if (url.isLocalFile()) return url.toLocalFile();
  }
  return {};
}

}  // namespace

int characters_before(const QString& text, int position) {
  int characters = 0;
  for (int i = 0; i < std::min<qsizetype>(position, text.size()); ++i) {
    if (text[i].isLowSurrogate()) continue;
    characters += text[i] == QLatin1Char('\n') ? 2 : 1;
  }
  return characters;
}

int position_after(const QString& text, int characters) {
  int position = 0;
  for (int counted = 0; position < text.size() && counted < characters; ++position) {
    if (text[position].isHighSurrogate()) ++position;
    counted += position < text.size() && text[position] == QLatin1Char('\n') ? 2 : 1;
  }
  return static_cast<int>(std::min<qsizetype>(position, text.size()));
}

void Entry::start(QWidget& widget, QWidget& pressed) {
  widget_ = &widget;
  widget.setAccessibleName(spoken_name(box_));
  new MouseTap(link_, pressed, box_);
  sync();
  made_ = true;
}

void Entry::take() {
  if (syncing_ || !link_->serving()) return;
  const QScopedValueRollback guard(syncing_, true);
  const QString text = shown_text();
  const Range range = shown_range();
  box_.Text = from_toolkit(text);
  box_.SelStart = characters_before(text, range.start);
  box_.SelLength = characters_before(text, range.end) - box_.SelStart;
}

void Entry::sync() {
  if (syncing_) return;
  const QScopedValueRollback guard(syncing_, true);
  widget_->setFont(face(box_.Font));
  set_style(*widget_, style_of(box_, widget_class_));
  dress();
  const QString wanted = to_toolkit(box_.Text);
  if (wanted != shown_text()) {
    show_text(wanted);
    // A text that the program puts into a box in use has nothing selected in it.
    if (made_) box_.SelStart = box_.SelLength = 0;
  }
  const Range range{position_after(wanted, box_.SelStart), position_after(wanted, box_.SelStart + box_.SelLength)};
  const Range shown = shown_range();
  if (shown.start != range.start || shown.end != range.end) show_range(range);
}

void Entry::show_menu(QMenu* menu, QPoint at) const {
  const QString ink = colour(box_.ForeColor).name();
  const QString ground = colour(box_.BackColor).name();
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setStyleSheet(QStringLiteral("QMenu { background: %2; color: %1; border: 1px solid %1; }"
                                     "QMenu::item { padding: 3px 18px; } QMenu::item:disabled { color: %3; }"
                                     "QMenu::item:selected:enabled { background: %1; color: %2; }"
                                     "QMenu::separator { height: 1px; background: %3; }")
                          .arg(ink, ground, colour(box_.ForeColor).darker().name()));
  for (QAction* action : menu->actions()) action->setIcon({});
  menu->popup(at);
}

LineEntry::LineEntry(std::shared_ptr<FormLink> link, platform::TextBox& box, QWidget* parent)
    : QLineEdit(parent), Entry(std::move(link), box, "QLineEdit") {
  if (box.takes_files) files_ = new PathCompletion(*this);
  start(*this, *this);
  connect(this, &QLineEdit::textChanged, this, [this] { take(); });
  connect(this, &QLineEdit::selectionChanged, this, [this] { take(); });
  connect(this, &QLineEdit::cursorPositionChanged, this, [this] { take(); });
}

void LineEntry::show_text(const QString& text) {
  if (files_ != nullptr) files_->close();
  setText(text);
}

Entry::Range LineEntry::shown_range() const {
  const int start = hasSelectedText() ? selectionStart() : cursorPosition();
  return {start, start + static_cast<int>(selectedText().size())};
}

void LineEntry::show_range(Range range) {
  deselect();
  if (range.end > range.start) {
    setSelection(range.start, range.end - range.start);
  } else {
    setCursorPosition(range.start);
  }
}

void LineEntry::dress() {
  if (files_ != nullptr) files_->dress(colour(box().ForeColor), colour(box().BackColor), font());
}

void LineEntry::contextMenuEvent(QContextMenuEvent* event) {
  show_menu(createStandardContextMenu(), event->globalPos());
}

// Accepts what is dragged where it is a file that the box can take. A copy: the file stays where it is.
bool LineEntry::brings_file(QDropEvent& event) const {
  if (files_ == nullptr || local_file(*event.mimeData()).isEmpty()) return false;
  event.setDropAction(Qt::CopyAction);
  event.accept();
  return true;
}

void LineEntry::dragEnterEvent(QDragEnterEvent* event) {
  if (!brings_file(*event)) QLineEdit::dragEnterEvent(event);
}

void LineEntry::dragMoveEvent(QDragMoveEvent* event) {
  if (!brings_file(*event)) QLineEdit::dragMoveEvent(event);
}

void LineEntry::dropEvent(QDropEvent* event) {
  if (!brings_file(*event)) {
    QLineEdit::dropEvent(event);
    return;
  }
  files_->close();
  selectAll();
  insert(quoted_path(local_file(*event->mimeData())));
  setFocus();
}

TextEntry::TextEntry(std::shared_ptr<FormLink> link, platform::TextBox& box, QWidget* parent)
    : QPlainTextEdit(parent), Entry(std::move(link), box, "QPlainTextEdit") {
  setTabChangesFocus(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  document()->setDocumentMargin(1);
  start(*this, *viewport());
  connect(this, &QPlainTextEdit::textChanged, this, [this] { take(); });
  connect(this, &QPlainTextEdit::selectionChanged, this, [this] { take(); });
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] { take(); });
}

// The document's text as it is: its own plain text would turn no-break spaces into common ones.
QString TextEntry::shown_text() const {
  return document()
      ->toRawText()
      .replace(QChar::ParagraphSeparator, QLatin1Char('\n'))
      .replace(QChar::LineSeparator, QLatin1Char('\n'));
}

Entry::Range TextEntry::shown_range() const {
  return {textCursor().selectionStart(), textCursor().selectionEnd()};
}

void TextEntry::show_range(Range range) {
  QTextCursor cursor = textCursor();
  cursor.setPosition(range.start);
  cursor.setPosition(range.end, QTextCursor::KeepAnchor);
  setTextCursor(cursor);
}

void TextEntry::contextMenuEvent(QContextMenuEvent* event) {
  show_menu(createStandardContextMenu(event->pos()), event->globalPos());
}

CheckEntry::CheckEntry(std::shared_ptr<FormLink> link, platform::CheckBox& box, QWidget* parent)
    : QCheckBox(parent), link_(std::move(link)), box_(box) {
  new MouseTap(link_, *this, box_);
  sync();
  connect(this, &QCheckBox::toggled, this, [this](bool checked) {
    if (link_->serving()) box_.Value = checked ? 1 : 0;
  });
}

void CheckEntry::sync() {
  setText(QString::fromStdString(box_.Caption));
  QPalette colours = palette();
  colours.setColor(QPalette::WindowText, colour(box_.ForeColor));
  setPalette(colours);
  setChecked(box_.Value != 0);
}

}  // namespace desktop
