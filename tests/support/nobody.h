// Rights of an ordinary user, for tests with unreadable files: root can read
// every file.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace zenfo::test {

// While it lives, a process of root has the rights of the user nobody; any
// other keeps its own. The folder is opened to all users, because only its
// owner had access.
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

  // Whether some files are unreadable now.
  static bool in_force() { return geteuid() != 0; }

 private:
  static constexpr uid_t kNobody = 65534;
  bool given_up_ = false;
};

}  // namespace zenfo::test
