#include "desktop/hook_loader.h"

#include <dlfcn.h>

#include "platform/hook_contract.h"

namespace desktop {

namespace {

class LoadedLibrary final : public platform::HookLibrary {
 public:
  explicit LoadedLibrary(void* library) : library_(library) {}

  // Looks up what the program calls; false, with the reason, where something is missing.
  bool resolve(std::string& error) {
    return resolve("InitHook", init_, error) && resolve("EndHook", end_, error) && resolve("DLL_STOP", stop_, error) &&
           resolve("ENVOIS_BUF_TMP", fetch_, error);
  }

  void InitHook(platform::Handle window) override { init_(window); }
  void EndHook() override { end_(); }
  void DLL_STOP(std::int32_t stop) override { stop_(stop); }
  void ENVOIS_BUF_TMP(point_hook* points, std::int32_t* count) override { fetch_(points, count); }

 private:
  template <class Function>
  bool resolve(const char* name, Function*& function, std::string& error) {
    dlerror();
    function = reinterpret_cast<Function*>(dlsym(library_, name));
    if (function != nullptr) return true;
    const char* reason = dlerror();
    error = reason != nullptr ? reason : std::string(name) + " is not there";
    return false;
  }

  // Never unloaded: its thread may still be on its way out when the program has done with it.
  void* const library_;
  InitHook_t* init_ = nullptr;
  EndHook_t* end_ = nullptr;
  DLL_STOP_t* stop_ = nullptr;
  ENVOIS_BUF_TMP_t* fetch_ = nullptr;
};

}  // namespace

std::unique_ptr<platform::HookLibrary> DesktopHookLoader::load(std::string_view name, std::string& error) {
  const std::string path = folder_ + "/" + std::string(name);
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    const char* reason = dlerror();
    error = reason != nullptr ? reason : path + " cannot be loaded";
    return nullptr;
  }
  auto loaded = std::make_unique<LoadedLibrary>(library);
  if (!loaded->resolve(error)) {
    dlclose(library);  // nothing of it has run yet
    return nullptr;
  }
  return loaded;
}

}  // namespace desktop
