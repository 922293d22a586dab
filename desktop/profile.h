// Profile files on the disk: between two saves the folder holds one complete file, the old or the new, whatever happens
// in between.
#pragma once

#include <string>
#include <string_view>

#include "platform/profile_service.h"

namespace desktop {

// The folder of the profile: $XDG_CONFIG_HOME/strokemind, else ~/.config/strokemind.
std::string profile_folder();

class ProfileFolder : public platform::FileStore {
 public:
  // The folder need not exist: the first save makes it.
  explicit ProfileFolder(std::string folder) : folder_(std::move(folder)) {}

  platform::ReadOutcome read(std::string_view file, std::string& bytes) override;
  // Writes a temporary file beside the target (symbolic links are followed), makes it last, and renames it over the
  // target. Keeps the mode of an old file; a new one can be read by its owner alone. Says on the error stream what went
  // wrong.
  bool replace(std::string_view file, std::string_view bytes) override;
  // Gives what stands under the name a second name, the first free of "NAME.ancien", "NAME.ancien-2"...: by a hard
  // link, else by a copy, else by moving it there.
  bool set_aside(std::string_view file) override;

 private:
  std::string path(std::string_view file) const { return folder_ + "/" + std::string(file); }

  std::string folder_;
};

// The profile service on that folder.
class DesktopProfile : private ProfileFolder, public platform::ProfileService {
 public:
  DesktopProfile() : ProfileFolder(profile_folder()), ProfileService(static_cast<ProfileFolder&>(*this)) {}
};

}  // namespace desktop
