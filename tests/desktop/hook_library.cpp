// A hook library that lacks its last export.
extern "C" {
void InitHook(unsigned /*window*/) {}
void EndHook() {}
void DLL_STOP(int /*stop*/) {}
}
