#include "desktop/list_model.h"

#include <QImage>
#include <QPixmap>

#include "desktop/icons.h"

namespace desktop {

void ListModel::reload() {
  beginResetModel();
  rows_ = list_.Count();
  // What a view does not show must not be there for a screen reader either.
  constexpr int of_table = 3;
  columns_ = list_.View == platform::view_report ? of_table : 1;
  endResetModel();
}

int ListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int ListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant ListModel::picture(const platform::IconReference& reference, const platform::ImageList* images) {
  if (images == nullptr) return {};
  const platform::ListImage* image = reference.key.empty() ? (*images)(reference.number) : (*images)(reference.key);
  if (image == nullptr) return {};
  if (image->pixels == nullptr) return icon_of(image->picture);
  const platform::Canvas& canvas = *image->pixels;
  QImage pixels(reinterpret_cast<const uchar*>(canvas.pixels().data()), canvas.width(), canvas.height(),
                QImage::Format_ARGB32);
  pixels.setDevicePixelRatio(canvas.density());
  return QPixmap::fromImage(pixels.copy());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
  // Between a change of the rows and the next reload the views may still ask for what has gone.
  if (link_->form == nullptr || !index.isValid() || index.row() >= list_.Count()) return {};
  platform::ListItem& row = list_.row(index.row() + 1);
  switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
      return QString::fromStdString(index.column() == 0 ? row.Text : row.SubItems(index.column()));
    case Qt::AccessibleDescriptionRole:
      return columns_ == 1 ? QString::fromStdString(row.SubItems(2)) : QString();
    case Qt::DecorationRole:
      if (index.column() != 0) return {};
      return list_.View == platform::view_icon ? picture(row.Icon, list_.Icons)
                                               : picture(row.SmallIcon, list_.SmallIcons);
    default:
      return {};
  }
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (link_->form == nullptr || orientation != Qt::Horizontal) return {};
  // A narrow column does not show all of its heading.
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  if (section >= static_cast<int>(list_.ColumnHeaders.size())) return {};
  return QString::fromStdString(list_.ColumnHeaders[static_cast<std::size_t>(section)].Text);
}

}  // namespace desktop
