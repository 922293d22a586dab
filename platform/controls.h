// Forms and controls as data. The program reads and assigns their properties and fills in their handlers; a platform
// shows them in real windows, or keeps them in memory. Lengths are twips, 15 to the pixel of the design screen, unless
// a member says otherwise; colours are 32-bit with red in the low byte; text is UTF-8.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/canvas.h"
#include "platform/component.h"

namespace platform {

enum class Kind {
  label,
  shape,
  line,
  picture_box,
  text_box,
  check_box,
  list_view,
  image,
  image_list,
  timer,
  colour_dialog
};

// What holds controls: a form, or a picture box. It can be drawn on.
class Surface {
 public:
  virtual ~Surface() = default;
  virtual Form& form() = 0;
  // In the order of creation: those made later lie in front, and windows of their own (picture boxes, text boxes,
  // lists) in front of everything that is only painted (labels, shapes, lines).
  std::vector<Control*> children;
};

// Values of BackStyle, BorderStyle and ScaleMode.
inline constexpr int transparent = 0;
inline constexpr int opaque = 1;
inline constexpr int border_none = 0;
inline constexpr int border_solid = 1;
inline constexpr int border_dotted = 3;
inline constexpr int scale_twips = 1;
inline constexpr int scale_pixels = 3;

// Values of DrawStyle and DrawMode.
inline constexpr int draw_solid = 0;
inline constexpr int draw_inside_solid = 6;
inline constexpr int copy_pen = 13;

enum class Alignment { left, right, centre };

// What a control is to somebody who hears the screen, or has no mouse: something to be told of, something to press, one
// of several to choose from by a press, the line that tells what happens, or a panel that is read out when it comes
// into sight and can be pressed.
enum class Role { content, button, choice, status, notice };

class Control : public Component {
 public:
  Control(Surface& container, std::string name, Rectangle place);

  virtual Kind kind() const = 0;
  void changed() override;
  // Paints the control now.
  void Refresh();
  Surface& Container() { return container_; }
  Form& form() { return container_.form(); }

  // The properties that a theme sets, null where this kind of control has no such property.
  virtual Property<std::int32_t>* fore_colour() { return nullptr; }
  virtual Property<std::int32_t>* back_colour() { return nullptr; }
  virtual Property<std::int32_t>* border_colour() { return nullptr; }
  virtual Property<std::int32_t>* dialog_colour() { return nullptr; }

  const std::string Name;
  int Index = -1;  // position in its control array, -1 outside one
  Property<float> Left, Top, Width, Height;
  Property<bool> Visible{*this, true};
  Property<std::string> spoken{*this, {}};  // its name where it is heard; a label without goes by its caption
  Role role = Role::content;                // settled when the form is made

  ClickHandler Click, DblClick;
  MouseHandler MouseDown, MouseMove, MouseUp;

 private:
  Surface& container_;
};

// Controls of one name and kind, told apart by an index; the indices may have gaps.
template <class C>
class ControlArray {
 public:
  C& add(int index, Surface& container, const std::string& name, Rectangle place) {
    auto& control = *controls_.emplace_back(std::make_unique<C>(container, name, place));
    control.Index = index;
    return control;
  }
  // `index` must be one that was added.
  C& operator()(int index) const {
    for (const auto& control : controls_) {
      if (control->Index == index) return *control;
    }
    std::abort();
  }
  bool holds(int index) const {
    for (const auto& control : controls_) {
      if (control->Index == index) return true;
    }
    return false;
  }
  auto begin() const { return controls_.begin(); }
  auto end() const { return controls_.end(); }

 private:
  std::vector<std::unique_ptr<C>> controls_;
};

class Label : public Control {
 public:
  using Control::Control;
  Kind kind() const override { return Kind::label; }
  Property<std::int32_t>* fore_colour() override { return &ForeColor; }
  Property<std::int32_t>* back_colour() override { return &BackColor; }
  Property<std::string> Caption{*this, {}};
  Property<std::int32_t> ForeColor{*this, 0};
  Property<std::int32_t> BackColor{*this, 0};
  Property<int> BackStyle{*this, transparent};
  Property<platform::Alignment> Alignment{*this, platform::Alignment::left};
  Property<platform::Font> Font{*this, {}};
  Property<bool> chosen{*this, false};     // of a choice: the one, as its colour shows
  Property<Picture> MouseIcon{*this, {}};  // the pointer over the label; none: the usual one
};

class Shape : public Control {
 public:
  using Control::Control;
  Kind kind() const override { return Kind::shape; }
  Property<std::int32_t>* back_colour() override { return &BackColor; }
  Property<std::int32_t>* border_colour() override { return &BorderColor; }
  Property<std::int32_t> BorderColor{*this, 0};
  Property<std::int32_t> BackColor{*this, 0};
  Property<int> BackStyle{*this, transparent};
  Property<int> BorderStyle{*this, border_solid};
  Property<bool> rounded{*this, false};
};

// A line from (X1, Y1) to (X2, Y2); its rectangle is the box around it.
class Line : public Control {
 public:
  Line(Surface& container, std::string name, Rectangle ends);  // ends: X1, Y1, X2, Y2
  Kind kind() const override { return Kind::line; }
  Property<std::int32_t>* border_colour() override { return &BorderColor; }
  Property<float> X1, Y1, X2, Y2;
  Property<std::int32_t> BorderColor{*this, 0};
  Property<int> BorderStyle{*this, border_solid};
};

class PictureBox : public Control, public Surface {
 public:
  PictureBox(Surface& container, std::string name, Rectangle place);
  Kind kind() const override { return Kind::picture_box; }
  Form& form() override { return Control::form(); }
  Property<std::int32_t>* fore_colour() override { return &ForeColor; }
  Property<std::int32_t>* back_colour() override { return &BackColor; }

  // Wipes what was drawn.
  void Cls();
  // A dot of the present DrawWidth at (x, y) in the box's pixels, in `colour` or, without one, in ForeColor.
  void PSet(double x, double y);
  void PSet(double x, double y, std::int32_t colour);

  // A filled box between two corners in the units of ScaleWidth and ScaleHeight, both included.
  void Box(double x1, double y1, double x2, double y2, std::int32_t colour);

  // How many units the box is wide and high: by ScaleMode twips or pixels, unless set otherwise.
  float ScaleWidth() const;
  float ScaleHeight() const;
  void ScaleWidth(float units) { scale_width_ = units; }
  void ScaleHeight(float units) { scale_height_ = units; }

  void changed() override;
  // While one lives, what is drawn on the box is shown all at once when it ends.
  class Hold {
   public:
    explicit Hold(PictureBox& box) : box_(box) { ++box_.holds_; }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    ~Hold() {
      if (--box_.holds_ == 0) box_.changed();
    }

   private:
    PictureBox& box_;
  };

  Property<std::int32_t> ForeColor{*this, 0};
  Property<std::int32_t> BackColor{*this, 0};
  Property<platform::Font> Font{*this, {}};
  Property<int> ScaleMode{*this, scale_twips};
  // Laid over the whole box when the form is loaded, under what is drawn later.
  Property<platform::Picture> Picture{*this, {}};
  // Where the next text is printed, in the units of ScaleWidth and ScaleHeight.
  float CurrentX = 0, CurrentY = 0;
  int DrawWidth = 1;  // pixels
  int DrawStyle = draw_solid;
  int DrawMode = copy_pen;
  bool AutoRedraw = false;
  Canvas canvas;  // what has been drawn; where it is empty BackColor shows

 private:
  std::optional<float> scale_width_, scale_height_;
  int holds_ = 0;
};

class TextBox : public Control {
 public:
  using Control::Control;
  Kind kind() const override { return Kind::text_box; }
  Property<std::int32_t>* fore_colour() override { return &ForeColor; }
  Property<std::int32_t>* back_colour() override { return &BackColor; }
  void SetFocus();
  // What is selected; an assignment puts `text` in its place, leaves the caret behind it and nothing selected.
  std::string SelText() const;
  void SelText(std::string_view text);
  Property<std::string> Text{*this, {}};  // lines end in CR LF
  Property<std::int32_t> ForeColor{*this, 0};
  Property<std::int32_t> BackColor{*this, 0xFFFFFF};
  Property<platform::Font> Font{*this, {}};
  Property<int> SelStart{*this, 0};   // characters
  Property<int> SelLength{*this, 0};  // characters
  bool MultiLine = false;
  bool takes_files = false;  // file names are completed while typing, and a file dropped on the box fills it
  KeyPressHandler KeyPress;

 private:
  // Where the selected part of Text begins and ends, in bytes.
  std::pair<std::size_t, std::size_t> selection() const;
};

class CheckBox : public Control {
 public:
  using Control::Control;
  Kind kind() const override { return Kind::check_box; }
  Property<std::int32_t>* fore_colour() override { return &ForeColor; }
  Property<std::string> Caption{*this, {}};
  Property<int> Value{*this, 0};
  Property<std::int32_t> ForeColor{*this, 0};
};

// One image of an image list: a fixed picture of the program, or pixels that were drawn.
struct ListImage {
  std::string key;  // empty: addressed by number alone
  Picture picture;
  std::shared_ptr<const Canvas> pixels;
};

class ImageList : public Control {
 public:
  ImageList(Surface& container, std::string name) : Control(container, std::move(name), {}) {}
  Kind kind() const override { return Kind::image_list; }
  void Clear();
  void Add(ListImage image);
  // Puts another image in the place of image `number`; nothing where there is no such image.
  void Replace(int number, ListImage image);
  int Count() const { return static_cast<int>(images_.size()); }
  // `number` counts from 1; null where there is no such image.
  const ListImage* operator()(int number) const;
  const ListImage* operator()(const std::string& key) const;

 private:
  std::vector<ListImage> images_;
};

// The icon of a row: an image number (from 1), an image key, or none.
struct IconReference {
  int number = 0;
  std::string key;
  bool operator==(const IconReference&) const = default;
};

class ListItem : public Component {
 public:
  ListItem(ListView& list, std::string text, IconReference icon, IconReference small_icon);
  void changed() override;
  // Columns 2 and 3 are sub-items 1 and 2.
  Property<std::string>& SubItems(int n) { return n == 1 ? sub1_ : sub2_; }
  Property<std::string> Text;
  const IconReference Icon, SmallIcon;

 private:
  ListView& list_;
  Property<std::string> sub1_, sub2_;
};

struct ColumnHeader {
  std::string Text;
  float Width;  // twips
};

// Values of View and Arrange.
inline constexpr int view_icon = 0;
inline constexpr int view_list = 2;
inline constexpr int view_report = 3;
inline constexpr int arrange_none = 0;
inline constexpr int arrange_left = 1;
inline constexpr int arrange_top = 2;

class ListView : public Control {
 public:
  ListView(Surface& container, std::string name, Rectangle place) : Control(container, std::move(name), place) {}
  Kind kind() const override { return Kind::list_view; }
  Property<std::int32_t>* fore_colour() override { return &ForeColor; }
  Property<std::int32_t>* back_colour() override { return &BackColor; }

  // Rows count from 1.
  int Count() const { return static_cast<int>(rows_.size()); }
  ListItem& row(int number) { return *rows_.at(static_cast<std::size_t>(number - 1)); }
  void Clear();
  // Puts a row at `position`, which is moved to the end where it lies beyond.
  ListItem& Add(int position, std::string text, IconReference icon, IconReference small_icon);
  // The selected row, 0 for none; null where none is selected.
  int selected_row() const { return selected_; }
  ListItem* SelectedItem() { return selected_ == 0 ? nullptr : &row(selected_); }
  // One row is selected at a time; a number that names no row does nothing.
  void select(int number);
  void EnsureVisible(int number);

  Property<std::int32_t> ForeColor{*this, 0};
  Property<std::int32_t> BackColor{*this, 0};
  Property<platform::Font> Font{*this, {}};
  Property<int> View{*this, view_icon};
  Property<int> Arrange{*this, arrange_none};
  Property<int> SortOrder{*this, 0};
  Property<ImageList*> Icons{*this, nullptr};
  Property<ImageList*> SmallIcons{*this, nullptr};
  std::vector<ColumnHeader> ColumnHeaders;
  Handle hWnd = 0;  // names the list to PostMessageA while its form is loaded
  KeyPressHandler KeyPress;
  std::function<void(int row)> ItemClick;  // after the row has been selected

 private:
  std::vector<std::unique_ptr<ListItem>> rows_;
  int selected_ = 0;
};

class Timer : public Control {
 public:
  // interval: milliseconds.
  Timer(Surface& container, std::string name, int interval, bool enabled);
  Kind kind() const override { return Kind::timer; }
  void changed() override;
  Property<int> Interval;
  Property<bool> Enabled;
  std::function<void()> Elapsed;
};

class ColourDialog : public Control {
 public:
  ColourDialog(Surface& container, std::string name) : Control(container, std::move(name), {}) {}
  Kind kind() const override { return Kind::colour_dialog; }
  Property<std::int32_t>* dialog_colour() override { return &Color; }
  Property<std::int32_t> Color{*this, 0};
};

// A fixed picture placed on a form.
class Image : public Control {
 public:
  using Control::Control;
  Kind kind() const override { return Kind::image; }
  Property<platform::Picture> Picture{*this, {}};
};

// One entry of a form's menu. A caption of "-" is a separator.
class MenuItem : public Component {
 public:
  explicit MenuItem(std::string caption) : Caption(std::move(caption)) {}
  void changed() override {}
  const std::string Caption;
  Property<bool> Checked{*this, false};
  ClickHandler Click;
};

class Form : public Component, public Surface {
 public:
  Form(std::string name, float width, float height);
  Form& form() override { return *this; }
  void changed() override;
  void Refresh();
  // Nothing is ever drawn on the bare form, so there is nothing to wipe but what waits to be painted.
  void Cls() { changed(); }

  const std::string Name;
  bool windowless = false;   // holds only menus and timers, and never needs a window
  Handle hWnd = 0;           // while loaded
  FormHost* host = nullptr;  // while loaded
  std::vector<Control*> Controls;

  Property<float> Left{*this, 0.0F}, Top{*this, 0.0F}, Width, Height;
  Property<bool> Visible{*this, false};
  Property<std::string> Caption{*this, {}};
  Property<std::int32_t> BackColor{*this, 0};
  Property<platform::Font> Font{*this, {}};
  Property<platform::Picture> Icon{*this, {}};
  Property<int> ScaleMode{*this, scale_twips};

  KeyHandler KeyDown, KeyUp;
  KeyPressHandler KeyPress;
  MouseHandler MouseDown, MouseMove, MouseUp;
  // The user closes the window by means of the desktop (Alt+F4, the task bar).
  std::function<void()> CloseRequest;
};

}  // namespace platform
