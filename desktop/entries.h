// Text boxes and check boxes: the toolkit's own widgets in the colours of the form, kept in step with the controls.
#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <memory>

#include "desktop/form_link.h"
#include "desktop/path_completion.h"

namespace desktop {

// Positions in a text count characters, of which a line end makes two (CR LF), where the toolkit's count 16-bit units,
// of which a line end is one. Both convert a position in `text`, whose lines end in LF; too far is the end.
int characters_before(const QString& text, int position);
int position_after(const QString& text, int characters);

// What text boxes of one line and of several have in common: text and selection in step with the control's.
class Entry : public Mirror {
 public:
  void sync() final;

 protected:
  // Positions in the toolkit's text; both are the caret's where nothing is selected.
  struct Range {
    int start, end;
  };
  Entry(std::shared_ptr<FormLink> link, platform::TextBox& box, const char* widget_class)
      : link_(std::move(link)), box_(box), widget_class_(widget_class) {}

  platform::TextBox& box() const { return box_; }
  // To be called once when the widget is made.
  void start(QWidget& widget, QWidget& pressed);
  // Takes over what the user has made of text and selection.
  void take();
  // The toolkit's context menu in the box's colours. Becomes the menu's owner.
  void show_menu(QMenu* menu, QPoint at) const;

  // Lines end in LF.
  virtual QString shown_text() const = 0;
  virtual void show_text(const QString& text) = 0;
  virtual Range shown_range() const = 0;
  virtual void show_range(Range range) = 0;
  // After the box's colours or its face may have changed.
  virtual void dress() {}

 private:
  std::shared_ptr<FormLink> link_;
  platform::TextBox& box_;
  const char* const widget_class_;
  QWidget* widget_ = nullptr;  // once it is made
  bool made_ = false;
  bool syncing_ = false;
};

// A text box of one line.
class LineEntry final : public QLineEdit, public Entry {
 public:
  LineEntry(std::shared_ptr<FormLink> link, platform::TextBox& box, QWidget* parent);

  // Gives whether a key that is on its way to the box is for the list of files under it, and for nobody else.
  bool completes(const QKeyEvent& key) { return files_ != nullptr && files_->takes(key); }

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  QString shown_text() const override { return text(); }
  void show_text(const QString& text) override;
  Range shown_range() const override;
  void show_range(Range range) override;
  void dress() override;
  bool brings_file(QDropEvent& event) const;

  PathCompletion* files_ = nullptr;  // where the box takes them
};

// A text box of several lines.
class TextEntry final : public QPlainTextEdit, public Entry {
 public:
  TextEntry(std::shared_ptr<FormLink> link, platform::TextBox& box, QWidget* parent);

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  QString shown_text() const override;
  void show_text(const QString& text) override { setPlainText(text); }
  Range shown_range() const override;
  void show_range(Range range) override;
};

class CheckEntry final : public QCheckBox, public Mirror {
 public:
  CheckEntry(std::shared_ptr<FormLink> link, platform::CheckBox& box, QWidget* parent);
  void sync() override;

 private:
  std::shared_ptr<FormLink> link_;
  platform::CheckBox& box_;
};

}  // namespace desktop
