// Whether the user wants to stop. The host notes the stop; long work polls for
// it.
//
// Tested by tests/cli/posix_command_test.cpp, tests/cli/posix_fault_test.cpp
#pragma once

namespace zenfo::host::system {

// The exit status for a process that the user stopped, else 0.
int stop_status();
// May be called from a signal handler or another thread. False when a stop was
// noted before.
bool note_stop(int status);

// While on, the process may end as soon as a stop arrives, because nothing is
// half done; whoever notes the stop ends it. Returns the former setting.
bool obey_stop(bool on);
bool is_stop_obeyed();

}  // namespace zenfo::host::system
