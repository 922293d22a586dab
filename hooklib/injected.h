// The keys and buttons that programs hold down by injecting them. The server keeps them down when the program that
// pressed them is gone.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <vector>

namespace hooklib {

class Injected {
 public:
  // `display` must outlive this.
  explicit Injected(xcb_connection_t* display);

  // The device whose keys are meant; 0 if there is none.
  std::uint16_t keyboard() const { return keyboard_; }
  bool any_down() const { return !down().empty(); }
  // Lets all of them up. Whose they are the server does not tell: if two programs inject at the same time, the other
  // one's go as well.
  void release_all() const;

 private:
  struct Down {
    bool key;  // or a button
    std::uint8_t code;
  };
  std::vector<Down> down() const;
  void add_down(std::uint16_t device, std::vector<Down>& found) const;

  xcb_connection_t* display_;
  std::uint16_t keyboard_ = 0;
  std::uint16_t pointer_ = 0;
};

}  // namespace hooklib
