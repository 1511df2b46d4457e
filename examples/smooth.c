/* SPDX-License-Identifier: MIT */
/* Smooths grain on both sides of an edge, and keeps the edge. */
#include <ovra/ovra.h>
#include <stdio.h>

enum { WIDTH = 64, HEIGHT = 64, CHANNELS = 3 };

/* The spread of the first channel in columns [begin, end). */
static int Spread(const uint8_t* picture, int begin, int end) {
  int low = 255;
  int high = 0;
  for (int y = 0; y < HEIGHT; ++y) {
    for (int x = begin; x < end; ++x) {
      const int sample = picture[(y * WIDTH + x) * CHANNELS];
      low = sample < low ? sample : low;
      high = sample > high ? sample : high;
    }
  }
  return high - low;
}

int main(void) {
  const OvraPixelFormatCode rgb8 = OvraMakePixelFormat(8, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);
  static uint8_t grainy[WIDTH * HEIGHT * CHANNELS];
  static uint8_t smooth[WIDTH * HEIGHT * CHANNELS];
  uint32_t state = 1;
  for (int i = 0; i < WIDTH * HEIGHT; ++i) {
    state = state * 1664525 + 1013904223;
    const uint32_t grain = state >> 29; /* 0 to 7 */
    const uint32_t tone = i % WIDTH < WIDTH / 2 ? 60 : 180;
    for (int c = 0; c < CHANNELS; ++c) grainy[i * CHANNELS + c] = (uint8_t)(tone + grain);
  }
  const OvraStatus status = OvraEFilterImage(grainy, smooth, WIDTH, HEIGHT, rgb8);
  if (status != OVRA_OK) {
    printf("%s\n", OvraStatusText(status));
    return 1;
  }
  printf("spread left of the edge %d -> %d, right of it %d -> %d, over it %d -> %d\n",
         Spread(grainy, 0, 32), Spread(smooth, 0, 32), Spread(grainy, 32, 64),
         Spread(smooth, 32, 64), Spread(grainy, 30, 34), Spread(smooth, 30, 34));
  return 0;
}
