/* SPDX-License-Identifier: MIT */
/* Places a picture on a larger canvas of one colour, with 12-bit samples and padded rows. */
#include <ovra/ovra.h>
#include <stdio.h>
#include <stdlib.h>

enum { WIDTH = 5, HEIGHT = 4 };

int main(void) {
  const OvraPixelFormatCode grey12 =
      OvraMakePixelFormat(12, 1, OVRA_MODEL_GREY, 4, OVRA_ROWS_TOP_DOWN);
  const uint16_t picture[2][2] = {{4095, 2048}, {1024, 512}};
  const uint16_t fill[1] = {100};
  size_t stride = 0;
  OvraStatus status = OvraRowStride(WIDTH, grey12, &stride);
  /* Two bytes more: with such rows the clearing of the padding runs on behind the last row. */
  uint8_t* canvas = malloc(stride * HEIGHT + 2);
  if (canvas == NULL) return 1;
  if (status == OVRA_OK) {
    status = OvraExtrapolateImage((const uint8_t*)picture, 2, 2, canvas, WIDTH, HEIGHT, grey12, 2,
                                  1, fill);
  }
  for (int y = 0; status == OVRA_OK && y < HEIGHT; ++y) {
    const uint16_t* row = (const uint16_t*)(const void*)(canvas + (size_t)y * stride);
    for (int x = 0; x < WIDTH; ++x) printf("%5d", row[x]);
    printf("\n");
  }
  if (status != OVRA_OK) printf("%s\n", OvraStatusText(status));
  free(canvas);
  return status != OVRA_OK;
}
