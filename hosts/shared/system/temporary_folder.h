// A folder of this process for files that are of no use afterwards: what the
// library notes of errors, copies for previews, what came through pipes. Its
// name cannot be guessed and only the user may enter it.
//
//   /tmp/zenfo-k3Fq9A/0
//   /tmp/zenfo-k3Fq9A/1
//
// It is removed when the command ends, also by a second signal. What a killed
// process leaves behind the next one removes: a folder is locked as long as its
// process lives.
//
// posix/temporary_folder.cpp and win32/temporary_folder.cpp are twins.
//
// Tested by tests/hosts/shared/temporary_folder_test.cpp,
// tests/hosts/shared/posix_temporary_folder_test.cpp
#pragma once

#include <string>

namespace zenfo::host::temporary_folder {

// Makes an empty file in the folder, which is made for the first one. Answers
// its path. Throws Failure where there is no place for it.
std::string make_file();
// Removes the folder, if there is one, with all that is in it. Fit for signal
// handlers.
void remove();

}  // namespace zenfo::host::temporary_folder
