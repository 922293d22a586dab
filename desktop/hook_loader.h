// Loading of the hook library by its name.
#pragma once

#include <string>
#include <utility>

#include "platform/services.h"

namespace desktop {

class DesktopHookLoader final : public platform::HookLoader {
 public:
  // `folder`: where the program lies, without a closing separator.
  explicit DesktopHookLoader(std::string folder) : folder_(std::move(folder)) {}
  std::unique_ptr<platform::HookLibrary> load(std::string_view name, std::string& error) override;

 private:
  const std::string folder_;
};

}  // namespace desktop
