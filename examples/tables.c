/* SPDX-License-Identifier: MIT */
/* Maps channels through tables, and through polynomials, from 8 to 12 bits. */
#include <ovra/ovra.h>
#include <stdio.h>

enum { VALUES = 256, MAX_OUTPUT = 4095 };

int main(void) {
  const OvraPixelFormatCode rgb8 = OvraMakePixelFormat(8, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);
  const OvraPixelFormatCode rgb12 =
      OvraMakePixelFormat(12, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);
  const uint8_t pixel[3] = {0, 128, 255};
  uint16_t by_tables[3];
  uint16_t by_polynomials[3];

  /* Negative, plain and darkened. */
  uint16_t negative[VALUES];
  uint16_t plain[VALUES];
  uint16_t darkened[VALUES];
  for (int v = 0; v < VALUES; ++v) {
    plain[v] = (uint16_t)(v * MAX_OUTPUT / 255);
    negative[v] = (uint16_t)(MAX_OUTPUT - plain[v]);
    darkened[v] = (uint16_t)(plain[v] / 2);
  }
  const OvraChannelTableSet tables = {{negative, plain, darkened}};
  /* The same as formulas: c0 + c1 * v + c2 * v * v. */
  const double unit = MAX_OUTPUT / 255.0;
  const OvraChannelPolynomial polynomials[3] = {
      {MAX_OUTPUT, -unit, 0, 0}, {0, unit, 0, 0}, {0, unit / 2, 0, 0}};

  OvraStatus status =
      OvraConvColor1DTblSingleStep(pixel, (uint8_t*)by_tables, 1, 1, rgb8, rgb12, &tables);
  if (status == OVRA_OK) {
    status = OvraConvColorCoefSingleStep(pixel, (uint8_t*)by_polynomials, 1, 1, rgb8, rgb12,
                                         polynomials);
  }
  if (status != OVRA_OK) {
    printf("%s\n", OvraStatusText(status));
    return 1;
  }
  printf("tables %d %d %d, polynomials %d %d %d\n", by_tables[0], by_tables[1], by_tables[2],
         by_polynomials[0], by_polynomials[1], by_polynomials[2]);
  return 0;
}
