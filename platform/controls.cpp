#include "platform/controls.h"

#include <algorithm>
#include <cmath>

#include "platform/text.h"

namespace platform {

Control::Control(Surface& container, std::string name, Rectangle place)
    : Name(std::move(name)),
      Left(*this, place.Left),
      Top(*this, place.Top),
      Width(*this, place.Width),
      Height(*this, place.Height),
      container_(container) {
  container.children.push_back(this);
  container.form().Controls.push_back(this);
}

void Control::changed() {
  if (FormHost* host = form().host) host->repaint(this);
}

void Control::Refresh() {
  if (FormHost* host = form().host) host->refresh(this);
}

Line::Line(Surface& container, std::string name, Rectangle ends)
    : Control(container, std::move(name),
              {std::min(ends.Left, ends.Width), std::min(ends.Top, ends.Height), std::abs(ends.Width - ends.Left),
               std::abs(ends.Height - ends.Top)}),
      X1(*this, ends.Left),
      Y1(*this, ends.Top),
      X2(*this, ends.Width),
      Y2(*this, ends.Height) {}

PictureBox::PictureBox(Surface& container, std::string name, Rectangle place)
    : Control(container, std::move(name), place),
      canvas(static_cast<int>(std::lround(place.Width / twips_per_pixel)),
             static_cast<int>(std::lround(place.Height / twips_per_pixel))) {}

void PictureBox::changed() {
  if (holds_ == 0) Control::changed();
}

void PictureBox::Cls() {
  canvas.clear();
  CurrentX = CurrentY = 0;
  changed();
}

void PictureBox::PSet(double x, double y) {
  PSet(x, y, ForeColor);
}

void PictureBox::PSet(double x, double y, std::int32_t colour) {
  canvas.dot(x, y, DrawWidth, colour);
  changed();
}

void PictureBox::Box(double x1, double y1, double x2, double y2, std::int32_t colour) {
  const double width = ScaleWidth();
  const double height = ScaleHeight();
  canvas.box(x1 / width, y1 / height, x2 / width, y2 / height, colour);
  changed();
}

float PictureBox::ScaleWidth() const {
  return scale_width_.value_or(ScaleMode == scale_pixels ? Width / twips_per_pixel : Width.get());
}

float PictureBox::ScaleHeight() const {
  return scale_height_.value_or(ScaleMode == scale_pixels ? Height / twips_per_pixel : Height.get());
}

void TextBox::SetFocus() {
  if (FormHost* host = form().host) host->set_focus(*this);
}

std::string TextBox::SelText() const {
  const auto [start, end] = selection();
  return Text.get().substr(start, end - start);
}

void TextBox::SelText(std::string_view text) {
  const auto [start, end] = selection();
  const int before = SelStart;
  int characters = 0;
  for (std::size_t at = 0; at < text.size(); ++characters) next_code_point(text, at);
  Text = Text.get().substr(0, start) + std::string(text) + Text.get().substr(end);
  SelStart = before + characters;
  SelLength = 0;
}

std::pair<std::size_t, std::size_t> TextBox::selection() const {
  const std::string& text = Text;
  std::size_t start = 0;
  for (int n = 0; n < SelStart && start < text.size(); ++n) next_code_point(text, start);
  std::size_t end = start;
  for (int n = 0; n < SelLength && end < text.size(); ++n) next_code_point(text, end);
  return {start, end};
}

void ImageList::Clear() {
  images_.clear();
  changed();
}

void ImageList::Add(ListImage image) {
  images_.push_back(std::move(image));
  changed();
}

void ImageList::Replace(int number, ListImage image) {
  if (number < 1 || number > Count()) return;
  images_[static_cast<std::size_t>(number - 1)] = std::move(image);
  changed();
}

const ListImage* ImageList::operator()(int number) const {
  return number < 1 || number > Count() ? nullptr : &images_[static_cast<std::size_t>(number - 1)];
}

const ListImage* ImageList::operator()(const std::string& key) const {
  const auto found = std::find_if(images_.begin(), images_.end(), [&](const auto& image) { return image.key == key; });
  return found == images_.end() || key.empty() ? nullptr : &*found;
}

ListItem::ListItem(ListView& list, std::string text, IconReference icon, IconReference small_icon)
    : Text(*this, std::move(text)),
      Icon(std::move(icon)),
      SmallIcon(std::move(small_icon)),
      list_(list),
      sub1_(*this, {}),
      sub2_(*this, {}) {}

void ListItem::changed() {
  list_.changed();
}

void ListView::Clear() {
  rows_.clear();
  selected_ = 0;
  changed();
}

ListItem& ListView::Add(int position, std::string text, IconReference icon, IconReference small_icon) {
  const int before = std::clamp(position, 1, Count() + 1);
  const auto added =
      rows_.insert(rows_.begin() + (before - 1),
                   std::make_unique<ListItem>(*this, std::move(text), std::move(icon), std::move(small_icon)));
  if (selected_ >= before) ++selected_;
  changed();
  return **added;
}

void ListView::select(int number) {
  if (number < 1 || number > Count() || number == selected_) return;
  selected_ = number;
  changed();
}

void ListView::EnsureVisible(int number) {
  if (number < 1 || number > Count()) return;
  if (FormHost* host = form().host) host->ensure_visible(*this, number);
}

Timer::Timer(Surface& container, std::string name, int interval, bool enabled)
    : Control(container, std::move(name), {}), Interval(*this, interval), Enabled(*this, enabled) {}

void Timer::changed() {
  if (FormHost* host = form().host) host->timer_changed(*this);
}

Form::Form(std::string name, float width, float height)
    : Name(std::move(name)), Width(*this, width), Height(*this, height) {}

void Form::changed() {
  if (host != nullptr) host->repaint(nullptr);
}

void Form::Refresh() {
  if (host != nullptr) host->refresh(nullptr);
}

}  // namespace platform
