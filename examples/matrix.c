/* SPDX-License-Identifier: MIT */
/* Halves the saturation by a colour matrix: each channel moves half way to the luminance. */
#include <ovra/ovra.h>
#include <stdio.h>

int main(void) {
  const OvraPixelFormatCode rgb8 = OvraMakePixelFormat(8, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);
  const double luminance[3] = {0.299, 0.587, 0.114};
  const uint8_t pixels[2 * 3] = {200, 100, 0, 90, 90, 90};
  uint8_t converted[2 * 3];
  OvraColorMatrix matrix = {{{0}}, 0};
  for (int to = 0; to < 3; ++to) {
    for (int from = 0; from < 3; ++from) {
      matrix.rows[to][from] = 0.5 * luminance[from] + (to == from ? 0.5 : 0.0);
    }
  }
  const OvraStatus status =
      OvraConvColorMtxSingleStep(pixels, converted, 2, 1, rgb8, rgb8, &matrix);
  if (status != OVRA_OK) {
    printf("%s\n", OvraStatusText(status));
    return 1;
  }
  for (int i = 0; i < 6; ++i) printf("%s%d", i == 3 ? " | " : " ", converted[i]);
  printf("\n");
  return 0;
}
