#include "platform/words.h"

namespace platform {
namespace {

constexpr std::string_view blanks = " \t\r\n";

bool is_one_of(char c, std::string_view set) {
  return set.find(c) != std::string_view::npos;
}

// Reads the words of one line. False from a member: the line is cut short.
class Splitter {
 public:
  Splitter(std::string_view line, std::string_view home) : line_(line), home_(home) {}

  std::optional<std::vector<std::string>> split() {
    std::vector<std::string> words;
    while ((position_ = line_.find_first_not_of(blanks, position_)) != std::string_view::npos) {
      word_.clear();
      if (!word()) return std::nullopt;
      words.push_back(word_);
    }
    return words;
  }

 private:
  bool word() {
    if (const std::string_view rest = line_.substr(position_);
        rest.front() == '~' && (rest.size() == 1 || rest[1] == '/' || is_one_of(rest[1], blanks))) {
      word_ += home_;
      ++position_;
    }
    for (; position_ < line_.size() && !is_one_of(line_[position_], blanks); ++position_) {
      const char c = line_[position_];
      if (c == '\'' || c == '"') {
        if (!quoted(c)) return false;
      } else {
        if (c == '\\' && ++position_ == line_.size()) return false;
        word_ += line_[position_];
      }
    }
    return true;
  }

  // From an opening quote to its partner.
  bool quoted(char quote) {
    while (++position_ < line_.size() && line_[position_] != quote) {
      const bool escape = quote == '"' && line_[position_] == '\\' && position_ + 1 < line_.size() &&
                          is_one_of(line_[position_ + 1], "\"\\$`");
      if (escape) ++position_;
      word_ += line_[position_];
    }
    return position_ < line_.size();
  }

  std::string_view line_, home_;
  std::size_t position_ = 0;
  std::string word_;
};

}  // namespace

std::optional<std::vector<std::string>> split_words(std::string_view line, std::string_view home) {
  return Splitter(line, home).split();
}

}  // namespace platform
