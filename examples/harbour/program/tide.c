#include "tide.h"

#include <math.h>

/* The tide follows half a cosine from one turn to the next. */
double tide_height(struct tide_turn from, struct tide_turn to, int minute) {
  double part = (double)(minute - from.minute) / (to.minute - from.minute);
  double swing = (1 - cos(part * acos(-1.0))) / 2;
  return from.height + (to.height - from.height) * swing;
}

/* Half a metre under the keel: the harbour master insists. */
int ferry_can_leave(double height) { return height >= 1.1 + 0.5; }
