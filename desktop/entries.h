// Text boxes and check boxes: the toolkit's own widgets in the colours of the form, kept in step with the controls.
#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <memory>

#include "desktop/form_link.h"

namespace desktop {

// Positions in a text count characters, of which a line end makes two (CR LF), where the toolkit's count 16-bit units,
// of which a line end is one. Both convert a position in `text`, whose lines end in LF; too far is the end.
int characters_before(const QString& text, int position);
int position_after(const QString& text, int characters);

// A text box of one line.
class LineEntry final : public QLineEdit, public Mirror {
 public:
  LineEntry(std::shared_ptr<FormLink> link, platform::TextBox& box, QWidget* parent);
  void sync() override;

 private:
  void take();
  void start_anew();

  std::shared_ptr<FormLink> link_;
  platform::TextBox& box_;
  bool syncing_ = false;
  bool made_ = false;
};

// A text box of several lines.
class TextEntry final : public QPlainTextEdit, public Mirror {
 public:
  TextEntry(std::shared_ptr<FormLink> link, platform::TextBox& box, QWidget* parent);
  void sync() override;

 private:
  void take();
  void start_anew();

  std::shared_ptr<FormLink> link_;
  platform::TextBox& box_;
  bool syncing_ = false;
  bool made_ = false;
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
