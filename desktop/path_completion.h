// Completion of file names while they are typed into a box of one line that holds a command line.
#pragma once

#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QStringList>
#include <QStringListModel>

#include "desktop/row_painter.h"

namespace desktop {

// A path as a word of a command line: in double quotes where the line would else be split or read otherwise there.
QString quoted_path(const QString& path);

// Offers the files that a path being typed may go on to, in a list under the box. The list never has the keyboard: the
// box's owner passes each key by it first.
class PathCompletion final : public QObject {
 public:
  // Becomes a child of the box.
  explicit PathCompletion(QLineEdit& box);

  // Gives whether the key was for the list, and must not reach anything else: nothing while it is closed.
  bool takes(const QKeyEvent& key);
  void close();
  void dress(const QColor& ink, const QColor& ground, const QFont& font);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void offer();
  void list(const QString& folder);
  void place(const QStringList& names);
  void choose(const QString& name);
  void move(int rows);

  QLineEdit& box_;
  QStringListModel model_;
  RowPainter painter_;
  QListView list_;
  // The word that is being completed: its place in the box, and the folder that it names with and without "~".
  int start_ = 0, end_ = 0;
  QString typed_folder_, folder_;
  QStringList names_;  // of everything in folder_
  int cursor_ = 0;     // where the caret was when the list was made
};

}  // namespace desktop
