/* SPDX-License-Identifier: MIT */
#include <ovra/ovra.h>
#include <stdio.h>

int main(void) {
  static uint8_t photo[600 * 400 * 3]; /* red, green, blue; 8 bits; here all black */
  static uint8_t smaller[150 * 100 * 3];
  OvraPixelFormatCode rgb8 = OvraMakePixelFormat(8, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);
  OvraStatus status = OvraResizeImage(photo, 600, 400, smaller, 150, 100, rgb8);
  if (status != OVRA_OK) {
    printf("%s\n", OvraStatusText(status));
    return 1;
  }
  return 0;
}
