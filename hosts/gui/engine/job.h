// What may be asked of the engine thread. A job carries all it needs and sets
// everything: it gets a library that was just started.
//
// Tested by tests/gui/engine/engine_thread_test.cpp
#pragma once

#include "gui/results/outbox.h"
#include "shared/session/session.h"

namespace zenfo::host::gui {

class Job {
 public:
  virtual ~Job() = default;
  // Runs on the engine thread. Throws Failure when it cannot go on, and Stopped
  // when the user stopped it; what it told until then stays.
  virtual void run(Session& session, Outbox& outbox) = 0;
  // Another job waits. True if this one shall be stopped for it. Any thread may
  // call it, and the next one.
  virtual bool give_way() { return false; }
  // Whether it does nothing until it gives way.
  virtual bool is_parked() const { return false; }
};

}  // namespace zenfo::host::gui
