/* SPDX-License-Identifier: MIT */
/* Reduces a picture as a whole, and a part of it with a kernel of one's own choice. */
#include <ovra/ovra.h>
#include <stdio.h>
#include <stdlib.h>

enum { WIDTH = 600, HEIGHT = 400, CHANNELS = 3 };

static void DrawGradient(uint8_t* picture) {
  for (int y = 0; y < HEIGHT; ++y) {
    for (int x = 0; x < WIDTH; ++x) {
      uint8_t* pixel = picture + (y * WIDTH + x) * CHANNELS;
      pixel[0] = (uint8_t)(x * 255 / (WIDTH - 1));
      pixel[1] = (uint8_t)(y * 255 / (HEIGHT - 1));
      pixel[2] = 128;
    }
  }
}

/* The left upper quarter to 200 x 134 pixels, with the softer cubic kernel of a = -0.5. */
static OvraStatus ResizePart(const uint8_t* picture, uint8_t* result, OvraPixelFormatCode format) {
  static float table[OVRA_KERNEL_TABLE_ENTRIES];
  int32_t taps = 0;
  float stretch = 0;
  OvraStatus status = OvraCalcCubicSpline(-0.5F, table);
  if (status == OVRA_OK) status = OvraSelectKernelSupport(200.0F / 300, &taps, &stretch);
  if (status != OVRA_OK) return status;
  return OvraResizeImageCore(picture, WIDTH, HEIGHT, result, 200, 134, format, 0, 0, 300, 200,
                             table, stretch, taps);
}

int main(void) {
  const OvraPixelFormatCode rgb8 = OvraMakePixelFormat(8, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);
  uint8_t* picture = malloc(WIDTH * HEIGHT * CHANNELS);
  uint8_t* whole = malloc(150 * 100 * CHANNELS);
  uint8_t* part = malloc(200 * 134 * CHANNELS);
  OvraStatus status = OVRA_ERROR_NO_MEMORY;
  if (picture != NULL && whole != NULL && part != NULL) {
    DrawGradient(picture);
    status = OvraResizeImage(picture, WIDTH, HEIGHT, whole, 150, 100, rgb8);
    if (status == OVRA_OK) status = ResizePart(picture, part, rgb8);
  }
  if (status == OVRA_OK) {
    const uint8_t* a = whole + (50 * 150 + 75) * CHANNELS;
    const uint8_t* b = part + (133 * 200 + 199) * CHANNELS;
    printf("middle of the whole: %d %d %d, corner of the part: %d %d %d\n", a[0], a[1], a[2], b[0],
           b[1], b[2]);
  } else {
    printf("%s\n", OvraStatusText(status));
  }
  free(part);
  free(whole);
  free(picture);
  return status != OVRA_OK;
}
