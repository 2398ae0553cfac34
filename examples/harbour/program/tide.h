/* Height of the water at Lower Wick, in metres over the quay's zero mark. */
#ifndef TIDE_H
#define TIDE_H

/* One turn of the tide: minutes since midnight, and the height then. */
struct tide_turn {
  int minute;
  double height;
};

/* The height at `minute`, between two turns that follow each other. */
double tide_height(struct tide_turn from, struct tide_turn to, int minute);

/* Whether the ferry Marigold, which draws 1.1 m, can leave the quay. */
int ferry_can_leave(double height);

#endif
