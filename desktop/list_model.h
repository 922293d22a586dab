// The rows of a list view, as the toolkit's views ask for them.
#pragma once

#include <QAbstractTableModel>
#include <memory>

#include "desktop/form_link.h"

namespace desktop {

class ListModel final : public QAbstractTableModel {
 public:
  ListModel(std::shared_ptr<FormLink> link, platform::ListView& list) : link_(std::move(link)), list_(list) {}

  // Takes over what the list's rows and images are now. The views forget their selection.
  void reload();

  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  // A pixmap of what was drawn, an icon of a fixed picture, or nothing.
  static QVariant picture(const platform::IconReference& reference, const platform::ImageList* images);

  std::shared_ptr<FormLink> link_;
  platform::ListView& list_;
  int rows_ = 0;
  int columns_ = 1;
};

}  // namespace desktop
