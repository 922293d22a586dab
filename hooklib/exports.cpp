// The eight functions by which the program knows this library.
#include <memory>
#include <mutex>
#include <type_traits>

#include "hooklib/hook.h"
#include "platform/hook_contract.h"

namespace {

struct State {
  std::mutex mutex;
  std::unique_ptr<hooklib::Hook> hook;
};

// Never destroyed: a program that exits without EndHook must not wait for a thread on its way out. The server takes
// the grabs back when the process is gone.
State& state() {
  static auto* const only = new State;
  return *only;
}

}  // namespace

extern "C" {

void InitHook(std::uint32_t window) {
  const std::lock_guard lock(state().mutex);
  // The old one first, or the new one would wait for it to give up the button.
  state().hook.reset();
  state().hook = std::make_unique<hooklib::Hook>(window);
}

void EndHook() {
  const std::lock_guard lock(state().mutex);
  state().hook.reset();
}

void DLL_STOP(std::int32_t stop) {
  const std::lock_guard lock(state().mutex);
  if (state().hook) state().hook->exchange().set_stopped(stop != 0);
}

void ENVOIS_BUF_TMP(point_hook* points, std::int32_t* count) {
  const std::lock_guard lock(state().mutex);
  if (state().hook) state().hook->exchange().copy_stroke(points, count);
}

// Declared by the program, never called, and with nothing to do.
void DLL_Hook() {}
void DLL_UnHook() {}
void HelloWorld() {}
void GetMessage() {}

}  // extern "C"

static_assert(std::is_same_v<decltype(InitHook), InitHook_t>);
static_assert(std::is_same_v<decltype(EndHook), EndHook_t>);
static_assert(std::is_same_v<decltype(DLL_STOP), DLL_STOP_t>);
static_assert(std::is_same_v<decltype(ENVOIS_BUF_TMP), ENVOIS_BUF_TMP_t>);
