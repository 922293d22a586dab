// The rows that the list has to show, worked out from what the user did: the view chosen last, what was saved since,
// what was deleted. The list itself is not asked.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/programme.h"

class ShownRows {
 public:
  explicit ShownRows(Programme& programme) : programme_(programme) {}

  // Miniatures are what a program begins with, and what a change of colours and the button for a
  // delete end with, whatever was answered.
  void miniatures(const std::string& deleted = "");
  // One of the buttons 0 to 3 has been pressed.
  void view(int button);
  // A new patron of that name is about to be saved, unless the program refuses it.
  void saves(const std::string& name);

  // What is wrong with the list; empty where nothing is.
  std::string fault();

 private:
  void settle();
  std::string fault_of_row(int number);

  Programme& programme_;
  std::vector<std::string> rows_;
  int view_ = platform::view_icon;
  bool drawn_ = true;                                         // the images are miniatures
  bool miniatures_ = true;                                    // the view that the user chose
  std::optional<std::pair<std::string, std::size_t>> saved_;  // and before how many rows its own goes
};
