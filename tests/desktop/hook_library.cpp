// A hook library that draws nothing: what it is told can be asked back through its one stroke.
#include "platform/hook_contract.h"

namespace {
point_hook told[4];
std::int32_t calls = 0;

void note(std::int32_t what, std::int32_t value) {
  told[calls++] = {what, value};
}
}  // namespace

extern "C" {
void InitHook(std::uint32_t window) {
  note(1, static_cast<std::int32_t>(window));
}
void EndHook() {
  note(2, 0);
}
void DLL_STOP(std::int32_t stop) {
  note(3, stop);
}
#ifndef TORN
void ENVOIS_BUF_TMP(point_hook* points, std::int32_t* count) {
  for (std::int32_t i = 0; i < calls; ++i) points[i] = told[i];
  *count = calls;
}
#endif
}
