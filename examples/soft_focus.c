/* SPDX-License-Identifier: MIT */
/* Softens a bright point on grey. */
#include <ovra/ovra.h>
#include <stdio.h>
#include <string.h>

enum { SIZE = 101, CHANNELS = 3 };

int main(void) {
  static uint8_t picture[SIZE * SIZE * CHANNELS];
  memset(picture, 64, sizeof picture);
  uint8_t* middle = picture + (SIZE / 2 * SIZE + SIZE / 2) * CHANNELS;
  memset(middle, 255, CHANNELS);

  OvraSoftFocusParams params = {0};
  params.radius = 500; /* pixels where the shorter side has 2503: here 20 */
  params.decay_base = 0.1;
  params.decay_exponent = 1;
  params.mix = 0.5;
  const OvraStatus status = OvraSoftFocus(picture, picture, SIZE, SIZE, &params);
  if (status != OVRA_OK) {
    printf("%s\n", OvraStatusText(status));
    return 1;
  }
  printf("the point: %d, beside it: %d, far from it: %d\n", middle[0], middle[CHANNELS],
         picture[(10 * SIZE + 90) * CHANNELS]);
  return 0;
}
