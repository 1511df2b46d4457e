/* SPDX-License-Identifier: MIT */
/* Turns a picture of 3 x 2 pixels in all eight ways. */
#include <ovra/ovra.h>
#include <stdio.h>

int main(void) {
  static const char* const names[8] = {"none",   "quarter left",   "half", "quarter right",
                                       "mirror", "anti-transpose", "flip", "transpose"};
  const OvraPixelFormatCode grey8 =
      OvraMakePixelFormat(8, 1, OVRA_MODEL_GREY, 1, OVRA_ROWS_TOP_DOWN);
  const uint8_t picture[6] = {1, 2, 3,  //
                              4, 5, 6};
  for (int32_t mode = OVRA_ROTATE_NONE; mode <= OVRA_ROTATE_TRANSPOSE; ++mode) {
    uint8_t turned[6];
    const OvraStatus status = OvraRotateImage(picture, turned, 3, 2, grey8, mode);
    if (status != OVRA_OK) {
      printf("%s\n", OvraStatusText(status));
      return 1;
    }
    /* Quarter turns and transposes exchange width and height. */
    const int width = mode % 2 == 1 ? 2 : 3;
    printf("%s:", names[mode]);
    for (int i = 0; i < 6; ++i) printf("%s%d", i % width == 0 ? " | " : " ", turned[i]);
    printf("\n");
  }
  return 0;
}
