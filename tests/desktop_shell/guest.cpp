// shell_guest REPORT [ARGUMENT...] writes how it was started to the file REPORT, which appears when it is complete.
// Where a pipe REPORT.hold exists it then waits until somebody opens that for writing, and makes the file REPORT.done.
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

int main(int count, char** arguments) {
  if (count < 2) return 1;
  const std::string report = arguments[1];
  {
    std::ofstream out(report + ".part");
    for (int i = 2; i < count; ++i) out << "argument " << arguments[i] << '\n';
    out << "directory " << fs::current_path().string() << '\n';
    // All that is open here but the report and the folder being read.
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
      std::error_code gone;
      const std::string target = fs::read_symlink(entry, gone).string();
      if (!target.ends_with(report + ".part") && !target.ends_with("/fd")) out << "descriptor " << target << '\n';
    }
    out << "session " << getsid(0) << '\n' << std::ifstream("/proc/self/status").rdbuf();
  }
  fs::rename(report + ".part", report);
  if (!fs::exists(report + ".hold")) return 0;
  alarm(60);  // should the test be gone
  close(open((report + ".hold").c_str(), O_RDONLY));
  std::ofstream(report + ".done") << "done";
}
