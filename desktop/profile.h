// Profile files on the disk: between two saves the folder holds one complete file, the old or the new, whatever happens
// in between.
#pragma once

#include <pwd.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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
  // gone left behind, once it is a minute old. Says on the error stream what went wrong.
  bool replace(std::string_view file, std::string_view bytes) override;
  // Gives what stands under the name a second name that lasts, the first free of "NAME.ancien", "NAME.ancien-2"...: by
  // a hard link, else by a copy, else by moving it there, which the replacement that follows does on its way.
  bool set_aside(std::string_view file) override;

 private:
  enum class Copy { made, owed, name_taken, failed };
  struct Move {
    std::string from, to;
  };

  std::string path(std::string_view file) const { return folder_ + "/" + std::string(file); }
  std::string temporary_of(const std::string& target);
  Copy copy_to(const std::string& original, std::string_view file, const std::string& name);
  bool fill(int file, const std::string& target, std::string_view bytes);
  bool move_away(const Move& move, bool& moved);
  std::optional<std::string> resolved(std::string path) const;
  bool make_folder(const std::string& folder);
  bool make_lasting(const std::string& folder);
  bool make_way_lasting(std::string folder);
  bool make_copy_lasting(const std::string& copy);
  void remove_leftovers(const std::string& target);

  desktop::SystemFiles system_;
  std::string folder_;
  platform::FileSystem& files_;
  std::optional<Move> move_;                // the old file, which the next replacement is to keep
  std::string way_lasting_;                 // the folder of which the names on the way to it last; empty for none
  std::vector<std::string> own_leftovers_;  // temporary files that could not be removed
};

// The profile service on that folder.
class DesktopProfile : private ProfileFolder, public platform::ProfileService {
 public:
  DesktopProfile() : ProfileFolder(profile_folder()), ProfileService(static_cast<ProfileFolder&>(*this)) {}
};

}  // namespace desktop
