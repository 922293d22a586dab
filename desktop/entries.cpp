#include "desktop/entries.h"

#include <QScopedValueRollback>
#include <QTextBlock>
#include <algorithm>
#include <utility>

#include "desktop/mouse.h"
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

// The document's text as it is: its own plain text would turn no-break spaces into common ones.
QString plain_text(const QTextDocument& document) {
  return document.toRawText().replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
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

LineEntry::LineEntry(std::shared_ptr<FormLink> link, platform::TextBox& box, QWidget* parent)
    : QLineEdit(parent), link_(std::move(link)), box_(box) {
  setAccessibleName(QString::fromStdString(box.Name));
  new MouseTap(link_, *this, box_);
  sync();
  made_ = true;
  connect(this, &QLineEdit::textChanged, this, [this] { take(); });
  connect(this, &QLineEdit::selectionChanged, this, [this] { take(); });
  connect(this, &QLineEdit::cursorPositionChanged, this, [this] { take(); });
}

void LineEntry::take() {
  if (syncing_ || !link_->serving()) return;
  const QScopedValueRollback guard(syncing_, true);
  box_.Text = from_toolkit(text());
  const int start = hasSelectedText() ? selectionStart() : cursorPosition();
  box_.SelStart = characters_before(text(), start);
  box_.SelLength = characters_before(text(), start + static_cast<int>(selectedText().size())) - box_.SelStart;
}

// A text that the program puts into a box in use has nothing selected in it.
void LineEntry::start_anew() {
  if (!made_) return;
  box_.SelStart = 0;
  box_.SelLength = 0;
}

void LineEntry::sync() {
  if (syncing_) return;
  const QScopedValueRollback guard(syncing_, true);
  setFont(face(box_.Font));
  set_style(*this, style_of(box_, "QLineEdit"));
  const QString wanted = to_toolkit(box_.Text);
  if (wanted != text()) {
    setText(wanted);
    start_anew();
  }
  const int start = position_after(wanted, box_.SelStart);
  const int end = position_after(wanted, box_.SelStart + box_.SelLength);
  if (end > start) {
    setSelection(start, end - start);
  } else {
    deselect();
    setCursorPosition(start);
  }
}

TextEntry::TextEntry(std::shared_ptr<FormLink> link, platform::TextBox& box, QWidget* parent)
    : QPlainTextEdit(parent), link_(std::move(link)), box_(box) {
  setAccessibleName(QString::fromStdString(box.Name));
  setTabChangesFocus(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  document()->setDocumentMargin(1);
  new MouseTap(link_, *viewport(), box_);
  sync();
  made_ = true;
  connect(this, &QPlainTextEdit::textChanged, this, [this] { take(); });
  connect(this, &QPlainTextEdit::selectionChanged, this, [this] { take(); });
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] { take(); });
}

void TextEntry::take() {
  if (syncing_ || !link_->serving()) return;
  const QScopedValueRollback guard(syncing_, true);
  const QString text = plain_text(*document());
  box_.Text = from_toolkit(text);
  box_.SelStart = characters_before(text, textCursor().selectionStart());
  box_.SelLength = characters_before(text, textCursor().selectionEnd()) - box_.SelStart;
}

// A text that the program puts into a box in use has nothing selected in it.
void TextEntry::start_anew() {
  if (!made_) return;
  box_.SelStart = 0;
  box_.SelLength = 0;
}

void TextEntry::sync() {
  if (syncing_) return;
  const QScopedValueRollback guard(syncing_, true);
  setFont(face(box_.Font));
  set_style(*this, style_of(box_, "QPlainTextEdit"));
  const QString wanted = to_toolkit(box_.Text);
  if (wanted != plain_text(*document())) {
    setPlainText(wanted);
    start_anew();
  }
  const int start = position_after(wanted, box_.SelStart);
  const int end = position_after(wanted, box_.SelStart + box_.SelLength);
  QTextCursor cursor = textCursor();
  if (cursor.selectionStart() == start && cursor.selectionEnd() == end) return;
  cursor.setPosition(start);
  cursor.setPosition(end, QTextCursor::KeepAnchor);
  setTextCursor(cursor);
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
