#include "../tide.h"

#include <assert.h>

int main(void) {
  struct tide_turn high = {370, 3.21}, low = {744, 0.62};
  assert(tide_height(high, low, 370) == 3.21);
  assert(ferry_can_leave(tide_height(high, low, 400)));
  assert(!ferry_can_leave(tide_height(high, low, 740)));
  return 0;
}
