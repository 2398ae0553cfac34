// Whether the user wants to stop. The host notes the stop; long work polls for
// it. A host that goes on afterwards forgets the stop.
//
// Tested by tests/cli/posix_command_test.cpp, tests/cli/posix_fault_test.cpp
#pragma once

namespace zenfo::host::system {

// Not 0 when the user stopped the work; of a command, its exit status.
int stop_status();
// May be called from a signal handler or another thread. False when a stop was
// noted before.
bool note_stop(int status);
void forget_stop();

// While on, the process may end as soon as a stop arrives, because nothing is
// half done; whoever notes the stop ends it. Returns the former setting.
bool obey_stop(bool on);
bool is_stop_obeyed();

}  // namespace zenfo::host::system
