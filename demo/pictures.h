// The pictures of the guides: the program with the example profile, its windows one after the other.
#pragma once

#include <filesystem>
#include <string>

namespace demo {

// Takes them at this scale of the windows ("1.5") and puts them into the folder. False where a window did not show.
bool take_pictures(const std::filesystem::path& folder, const std::string& scale);

}  // namespace demo
