// A hook library that tests play by hand, behind the same loader as the real one.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/services.h"
#include "simulation/journal.h"

namespace simulation {

// The library's state, which outlives its loading and unloading.
struct HookState {
  std::vector<point_hook> stroke;  // the last finished stroke
  platform::Handle window = 0;     // given to InitHook; 0 before it and after EndHook
  std::int32_t stop = 0;           // last flag of DLL_STOP
};

class HookLoader : public platform::HookLoader {
 public:
  explicit HookLoader(Journal& journal) : journal_(journal) {}
  // Fault "load": the library is missing.
  std::unique_ptr<platform::HookLibrary> load(std::string_view name, std::string& error) override;

  HookState state;

 private:
  Journal& journal_;
};

}  // namespace simulation
