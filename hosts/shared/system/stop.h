// Whether the user wants the work in hand to stop. The host notes it, what
// takes long asks.
//
// Tested by tests/cli/posix_command_test.cpp, tests/cli/posix_fault_test.cpp
#pragma once

namespace zenfo::host::system {

// Exit status for a process that was told to stop; 0 while it was not.
int stop_status();
// May be called from a signal handler or another thread. False when a stop was
// noted before.
bool note_stop(int status);

// While on, the process may end as soon as a stop arrives, because nothing is
// half done. Returns the former setting. Whoever notes the stop ends the
// process.
bool obey_stop(bool on);
bool is_stop_obeyed();

}  // namespace zenfo::host::system
