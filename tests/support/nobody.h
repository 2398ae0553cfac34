// Rights of nobody in particular, for tests of what is closed to a user: to
// root nothing is.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace zenfo::test {

// While it lives, root's process has nobody's rights; any other keeps its own.
// The folder is opened to all, as it is made for its owner alone.
class AsNobody {
 public:
  explicit AsNobody(const std::string& folder) {
    chmod(folder.c_str(), 0777);
    given_up_ = geteuid() == 0 && seteuid(kNobody) == 0;
  }
  ~AsNobody() {
    if (given_up_ && seteuid(0) != 0) _exit(1);
  }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;

  // Whether there are files that may not be read now.
  static bool in_force() { return geteuid() != 0; }

 private:
  static constexpr uid_t kNobody = 65534;
  bool given_up_ = false;
};

}  // namespace zenfo::test
