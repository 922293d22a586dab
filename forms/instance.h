// A form that exists from its first use to its unloading, and comes back in its design state.
#pragma once

#include <functional>
#include <memory>

#include "platform/services.h"

template <class F>
class FormInstance {
 public:
  explicit FormInstance(platform::Windows& windows) : windows_(windows) {}
  FormInstance(const FormInstance&) = delete;
  FormInstance& operator=(const FormInstance&) = delete;

  // Runs when the form has been made and has its window; here its handlers are filled in. Set before the first use.
  std::function<void(F&)> Load;
  // Runs before the form goes.
  std::function<void(F&)> Unload;

  bool loaded() const { return form_ != nullptr; }
  // Loads the form where it is not loaded.
  F& operator()() {
    if (form_ == nullptr) {
      form_ = std::make_unique<F>();
      windows_.load(*form_);
      loading_ = true;
      Load(*form_);
      loading_ = false;
    }
    return *form_;
  }
  void unload() {
    // From under its own loading it does not go: that can only be asked for by the end of the program, inside a box.
    if (form_ == nullptr || loading_) return;
    if (Unload) Unload(*form_);
    windows_.unload(*form_);
    form_.reset();
  }
  // What the user sees, not the form's own Visible.
  bool on_screen() const { return form_ != nullptr && windows_.on_screen(*form_); }

 private:
  platform::Windows& windows_;
  std::unique_ptr<F> form_;
  bool loading_ = false;
};
