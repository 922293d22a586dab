// The action editor's window.
#pragma once

#include "platform/controls.h"

class Actions : public platform::Form {
 public:
  Actions() : Form("Actions", 4995, 4155) { Caption = "Actions:"; }
};
