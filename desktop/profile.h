// Profile files on the disk: between two saves the folder holds one complete file, the old or the new, whatever happens
// in between.
#pragma once

#include <pwd.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "desktop/system_files.h"
#include "platform/file_system.h"
#include "platform/profile_service.h"

namespace desktop {

// The folder of the profile: $XDG_CONFIG_HOME/strokemind, else .config/strokemind of $HOME, else of the home that the
// system knows for the user. Paths that do not start at the root are passed over.
std::string profile_folder(passwd* (*user_of)(uid_t) = ::getpwuid);

class ProfileFolder : public platform::FileStore {
 public:
  // The folder need not exist: the first save makes it.
  explicit ProfileFolder(std::string folder) : folder_(std::move(folder)), files_(system_) {}
  // On other calls than the system's.
  ProfileFolder(std::string folder, platform::FileSystem& files) : folder_(std::move(folder)), files_(files) {}
  ProfileFolder(const ProfileFolder&) = delete;
  ProfileFolder& operator=(const ProfileFolder&) = delete;

  platform::ReadOutcome read(std::string_view file, std::string& bytes) override;
  // Writes a temporary file beside the target (symbolic links are followed), makes it last, and renames it over the
  // target. Keeps the mode of an old file; a new one can be read by its owner alone. Removes what processes that are
  // gone left behind. Says on the error stream what went wrong.
  bool replace(std::string_view file, std::string_view bytes) override;
  // Gives what stands under the name a second name that lasts, the first free of "NAME.ancien", "NAME.ancien-2"...: by
  // a hard link, else by a copy, else by moving it there.
  bool set_aside(std::string_view file) override;

 private:
  enum class Copy { made, there_already, name_taken, failed };

  std::string path(std::string_view file) const { return folder_ + "/" + std::string(file); }
  std::string temporary_of(const std::string& target) const;
  Copy copy_to(const std::string& original, std::string_view file, const std::string& name);
  int create_temporary(const std::string& path);
  bool write_temporary(const std::string& temporary, const std::string& target, std::string_view bytes);
  std::optional<std::string> resolved(std::string path) const;
  void make_folder(const std::string& folder);
  bool make_lasting(const std::string& folder);
  void remove_leftovers(const std::string& target);

  desktop::SystemFiles system_;
  std::string folder_;
  platform::FileSystem& files_;
};

// The profile service on that folder.
class DesktopProfile : private ProfileFolder, public platform::ProfileService {
 public:
  DesktopProfile() : ProfileFolder(profile_folder()), ProfileService(static_cast<ProfileFolder&>(*this)) {}
};

}  // namespace desktop
