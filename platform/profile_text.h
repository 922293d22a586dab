// The text of a profile: sections of "key=value" lines, in their order. Names are matched without regard to case,
// blanks around names and values are dropped, lines end in CR LF when written.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace platform {

class ProfileText {
 public:
  ProfileText() = default;
  // Reads bytes of code page 1252 with line ends of any kind.
  static ProfileText parse(std::string_view bytes);
  // Bytes of code page 1252.
  std::string bytes() const;

  std::vector<std::string> sections() const;
  // The keys of a section; none where there is no such section.
  std::vector<std::string> keys(std::string_view section) const;
  // Null where section or key is missing. The first key of a name counts.
  const std::string* value(std::string_view section, std::string_view key) const;
  // A new section goes to the end, a new key to the end of its section. Line ends in a value become blanks, since a
  // value is one line.
  void set(std::string_view section, std::string_view key, std::string_view value);
  void clear();
  bool empty() const { return sections_.empty(); }

  // Whether the bytes that were parsed held something that sections and keys do not show: comments, lines before the
  // first section or without "=", a section or key a second time, NULs.
  bool residue() const { return residue_; }

 private:
  struct Entry {
    std::string key, value;
  };
  struct Section {
    std::string name;
    std::vector<Entry> entries;
  };
  Section& append(std::string_view name);
  Section* find(std::string_view name);
  const Section* find(std::string_view name) const;
  void parse_line(std::string_view line, Section*& current);

  std::vector<Section> sections_;
  std::unordered_map<std::string, std::size_t> places_;  // of sections, by upper-case name
  bool residue_ = false;
};

}  // namespace platform
