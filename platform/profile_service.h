// The profile service over plain file operations: it reads a file once, gathers changes in memory, and writes them in
// one replacement. A file that another program has changed meanwhile is set aside before it is replaced. Both platforms
// use it; they differ in the files behind it.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/profile_text.h"
#include "platform/services.h"

namespace platform {

enum class ReadOutcome { read, missing, unreadable };

// Whole files by bare name, in the folder of the profile.
class FileStore {
 public:
  virtual ~FileStore() = default;
  // `unreadable` where something is there that is not a file of sane size that can be read.
  virtual ReadOutcome read(std::string_view file, std::string& bytes) = 0;
  // Puts a file with these bytes in the place of the old one, in one step that lasts; false leaves the old one.
  virtual bool replace(std::string_view file, std::string_view bytes) = 0;
  // Keeps what stands under the name under another one beside it; true too where nothing stands there.
  virtual bool set_aside(std::string_view file) = 0;
};

class ProfileService : public Profile {
 public:
  explicit ProfileService(FileStore& files) : files_(files) {}

  std::string GetPrivateProfileStringA(std::optional<std::string_view> section, std::optional<std::string_view> key,
                                       std::string_view fallback, std::size_t size, std::string_view file) override;
  bool WritePrivateProfileStringA(std::string_view section, std::string_view key, std::string_view value,
                                  std::string_view file) override;
  bool Dir(std::string_view file) override;
  void Kill(std::string_view file) override;
  bool flush(std::string_view file) override;
  void preserve(std::string_view file) override;

 private:
  struct Gathered {
    ProfileText text;
    bool exists = false;
    bool preserve = false;
    std::optional<std::string> known;  // what the file held when it was last read or written here
  };
  Gathered& gathered(std::string_view file);
  bool foreign(std::string_view file, const Gathered& pending, const std::string& next);

  FileStore& files_;
  std::map<std::string, Gathered, std::less<>> gathered_;
};

}  // namespace platform
