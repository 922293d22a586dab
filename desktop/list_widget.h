// A list view: the toolkit's icon view and its table, of which one is shown at a time.
#pragma once

#include <QListView>
#include <QTreeView>
#include <QWidget>
#include <memory>

#include "desktop/list_model.h"

namespace desktop {

class ListWidget final : public QWidget, public Mirror {
 public:
  ListWidget(std::shared_ptr<FormLink> link, platform::ListView& list, QWidget* parent);

  void sync() override;
  // Scrolls until a row (from 1) is seen.
  void ensure_visible(int row);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QAbstractItemView& shown() const;
  void watch(QAbstractItemView& view);
  void take_over();
  void arrange();
  void picked(const QModelIndex& index);

  std::shared_ptr<FormLink> link_;
  platform::ListView& list_;
  ListModel model_;
  QListView* icons_;
  QTreeView* report_;
  bool stale_ = true;     // something of the list has changed since the views were set up
  bool syncing_ = false;  // the views follow the list, not the user
};

}  // namespace desktop
