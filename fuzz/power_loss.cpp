// Saves, hands and power cuts by chance on a disk that keeps only what was synced: what is there after a power cut is
// whole, and no older than the last save that said it was done.
//
// usage: power_loss [SEEDS [FIRST-SEED]]     1,000 seeds from 1 on
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "desktop/profile.h"
#include "fuzz/last_words.h"
#include "simulation/disk_in_memory.h"

namespace {

constexpr const char* name = "Strokemind.AI";
constexpr const char* folder = "/home/.config/strokemind";
const std::string file = std::string(folder) + "/" + name;
constexpr const char* comment = "; which no program takes in\r\n";
constexpr int turns = 6;

class Life {
 public:
  explicit Life(unsigned int seed) : chances_(seed) {
    disk_.linkless = upto(1) == 0;
    disk_.mkdir("/home");
    disk_.fsync(disk_.open("/", platform::Opening::folder));
    begin(true);
  }

  void turn() {
    if (upto(3) == 0 && disk_.file(file)) hand();
    save();
    if (upto(2) == 0) {
      // Killed, or stopped, and started anew.
      disk_.restart();
      begin(false);
    } else if (disk_.off() || upto(1) == 0) {
      disk_.lose_power(chances_);
      ++losses;
      begin(true);
    }
    disk_.calls_left = simulation::DiskInMemory::never;
    look_for_hands();
  }

  int losses = 0;
  std::string broken;  // the first promise that was, empty for none

 private:
  std::size_t upto(std::size_t most) { return std::uniform_int_distribution<std::size_t>(0, most)(chances_); }
  void expect(bool kept, const char* promise) {
    if (!kept && broken.empty()) broken = promise;
  }

  void save() {
    const std::size_t length = upto(200);
    const std::string value(length, static_cast<char>('a' + upto(25)));
    const std::string key = std::to_string(++saves_);
    service_->WritePrivateProfileStringA("A", key, value, name);
    known_ += (known_.empty() ? "[A]\r\n" : "") + key + "=" + value + "\r\n";
    // A save makes 17 to about 80 calls, so that some are cut off and some are not.
    if (upto(2) != 0) disk_.calls_left = upto(upto(1) == 0 ? 40 : 80);
    const bool saved = service_->flush(name);
    if (disk_.off()) {
      possible_.emplace_back(known_);
      return;
    }
    expect(saved, "a save without a fault succeeds");
    possible_ = {known_};
    unsynced_.reset();
    for (const std::string& left : disk_.names(folder)) expect(left.front() != '.', "a save leaves nothing behind");
  }

  // Another process comes up and takes in what is there.
  void begin(bool settled) {
    std::optional<std::string> found = disk_.file(file);
    const bool known = std::find(possible_.begin(), possible_.end(), found) != possible_.end();
    if (settled && unsynced_ && !known) {
      // No save has come to make last what the hand wrote. It is gone, and the hand makes sure of the next.
      std::erase(by_hand_, *unsynced_);
      hand();
      disk_.fsync(disk_.open(file, platform::Opening::read));
      disk_.fsync(disk_.open(folder, platform::Opening::folder));
      found = by_hand_.back();
    } else {
      expect(known, "the file is the last one or later");
    }
    if (settled) {
      possible_ = {found};
      unsynced_.reset();
    }
    known_ = found.value_or("");
    if (known_.starts_with(comment)) {
      known_.erase(0, std::string(comment).size());
    } else {
      std::erase(by_hand_, known_);  // taken in now
    }
    profile_.emplace(folder, disk_);
    service_.emplace(*profile_);
    expect(service_->Dir(name) == found.has_value(), "what is there is found");
  }

  void hand() {
    if (const auto old = disk_.file(file)) std::erase(by_hand_, *old);
    by_hand_.push_back((upto(1) == 0 ? comment : "") + ("[A]\r\nby_hand=" + std::to_string(++saves_) + "\r\n"));
    disk_.put(file, by_hand_.back());
    possible_ = {by_hand_.back()};
    unsynced_ = by_hand_.back();
  }

  void look_for_hands() {
    std::vector<std::string> kept;
    for (const std::string& entry : disk_.names(folder)) {
      if (entry.front() != '.') kept.push_back(*disk_.file(std::string(folder) + "/" + entry));
    }
    for (const std::string& bytes : by_hand_) {
      expect(std::find(kept.begin(), kept.end(), bytes) != kept.end(), "what a hand has written is kept");
    }
  }

  std::mt19937 chances_;
  simulation::DiskInMemory disk_;
  std::optional<desktop::ProfileFolder> profile_;
  std::optional<platform::ProfileService> service_;
  int saves_ = 0;
  std::string known_;                                                  // what the service holds
  std::vector<std::optional<std::string>> possible_ = {std::nullopt};  // what the disk may hold after a power cut
  std::vector<std::string> by_hand_;                                   // what no process has taken in
  std::optional<std::string> unsynced_;  // what a hand has put there, and no save has come since
};

}  // namespace

int main(int count, char** arguments) {
  const auto number = [&](int n, unsigned long otherwise) {
    return count > n ? std::strtoul(arguments[n], nullptr, 10) : otherwise;
  };
  const unsigned long seeds = number(1, 1000);
  const unsigned long first = number(2, 1);
  long losses = 0;
  for (unsigned long seed = first; seed < first + seeds; ++seed) {
    set_last_words("again: power_loss 1 " + std::to_string(seed));
    Life life(static_cast<unsigned int>(seed));
    for (int turn = 0; turn < turns; ++turn) {
      life.turn();
      if (life.broken.empty()) continue;
      std::printf("broken in turn %d of seed %lu: %s\n", turn, seed, life.broken.c_str());
      return 1;
    }
    losses += life.losses;
  }
  set_last_words("");
  std::printf("power losses: %ld with %lu seeds, nothing lost\n", losses, seeds);
  return 0;
}
