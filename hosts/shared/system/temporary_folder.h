// A folder of this process for temporary files: the library's error file,
// copies for previews, copies of pipes. Its name cannot be guessed and only the
// user may enter it.
//
//   /tmp/zenfo-k3Fq9A/0
//   /tmp/zenfo-k3Fq9A/1
//
// It is removed when the work ends. If a process is killed, the next one
// removes its folder: a folder is locked as long as its process lives.
//
// posix/temporary_folder.cpp and win32/temporary_folder.cpp are twins.
//
// Tested by tests/hosts/shared/temporary_folder_test.cpp,
// tests/hosts/shared/posix_temporary_folder_test.cpp
#pragma once

#include <string>

namespace zenfo::host::temporary_folder {

// Creates an empty file in the folder, and the folder for the first one.
// Returns its path. Throws Failure if there is no place for it.
std::string make_file();
// Removes the folder, if it exists, with all its files. Safe in signal
// handlers.
void remove();

}  // namespace zenfo::host::temporary_folder
