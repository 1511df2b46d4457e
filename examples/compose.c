/* SPDX-License-Identifier: MIT */
/* Lays a picture with alpha over another one, and blends by a mask. */
#include <ovra/ovra.h>
#include <stdio.h>

enum { WIDTH = 4 };

static void PrintRow(const char* name, const uint8_t* row) {
  printf("%s:", name);
  for (int i = 0; i < 3 * WIDTH; ++i) printf("%s%d", i % 3 == 0 ? "  " : " ", row[i]);
  printf("\n");
}

int main(void) {
  const OvraPixelFormatCode rgb = OvraMakePixelFormat(8, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);
  const OvraPixelFormatCode rgba =
      OvraMakePixelFormat(8, 4, OVRA_MODEL_RGBA, 1, OVRA_ROWS_TOP_DOWN);
  uint8_t picture[3 * WIDTH] = {10, 10, 10, 20, 20, 20, 30, 30, 30, 40, 40, 40};
  /* Three red pixels: opaque, half transparent, transparent. */
  const uint8_t logo[4 * 3] = {200, 0, 0, 255, 200, 0, 0, 127, 200, 0, 0, 0};
  const uint8_t white[3 * WIDTH] = {255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255};
  const uint8_t mask[3 * WIDTH] = {0, 0, 0, 64, 64, 64, 128, 128, 128, 255, 255, 255};

  /* At column 1; what would reach beyond the picture is clipped. */
  OvraStatus status = OvraCompositeImage(picture, WIDTH, 1, rgb, logo, 3, 1, rgba, 1, 0,
                                         OVRA_BLEND_WEIGHT_OF_SOURCE);
  if (status == OVRA_OK) PrintRow("logo", picture);
  if (status == OVRA_OK) {
    status = OvraCompositeImageWithMaskBlending(picture, WIDTH, 1, white, mask, WIDTH, 1, rgb, 0, 0,
                                                OVRA_BLEND_WEIGHT_OF_SOURCE);
  }
  if (status == OVRA_OK) PrintRow("mask", picture);
  if (status != OVRA_OK) printf("%s\n", OvraStatusText(status));
  return status != OVRA_OK;
}
