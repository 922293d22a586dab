#include "simulation/hook.h"

#include <algorithm>

namespace simulation {

namespace {

class Hook : public platform::HookLibrary {
 public:
  Hook(HookState& state, Journal& journal) : state_(state), journal_(journal) {}

  void InitHook(platform::Handle window) override {
    journal_.write("InitHook ", window);
    state_.window = window;
  }
  void EndHook() override {
    journal_.write("EndHook");
    state_.window = 0;
  }
  void DLL_STOP(std::int32_t stop) override {
    journal_.write("DLL_STOP ", stop);
    state_.stop = stop;
  }
  void ENVOIS_BUF_TMP(point_hook* points, std::int32_t* count) override {
    if (state_.stroke.empty()) return;
    std::copy(state_.stroke.begin(), state_.stroke.end(), points);
    *count = static_cast<std::int32_t>(state_.stroke.size());
  }

 private:
  HookState& state_;
  Journal& journal_;
};

}  // namespace

std::unique_ptr<platform::HookLibrary> HookLoader::load(std::string_view name, std::string& error) {
  journal_.write("load ", name);
  if (journal_.fails("load")) {
    error = "no such library";
    return nullptr;
  }
  return std::make_unique<Hook>(state, journal_);
}

}  // namespace simulation
