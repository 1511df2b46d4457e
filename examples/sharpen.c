/* SPDX-License-Identifier: MIT */
/* Sharpens a soft edge: weights and curves from the library, a context, and a run with it. */
#include <ovra/ovra.h>
#include <stdio.h>

enum { WIDTH = 16, HEIGHT = 8 };

/* The context can serve any number of pictures of its format, also at the same time. */
static OvraStatus MakeContext(OvraPixelFormatCode format, OvraYUsmContext** context) {
  int32_t weights[OVRA_YUSM_MAX_TAPS];
  int32_t taps = 0;
  OvraResponsePoint levels[OVRA_DEFAULT_LEVEL_POINTS];
  OvraResponsePoint differences[OVRA_DEFAULT_DIFFERENCE_POINTS];
  int16_t level_table[OVRA_LEVEL_TABLE_SIZE];
  int16_t difference_table[OVRA_DIFFERENCE_TABLE_SIZE];

  OvraStatus status = OvraGaussianWeights(1.0, OVRA_YUSM_MAX_TAPS, &taps, weights);
  if (status == OVRA_OK) status = OvraDefaultCurves(levels, differences);
  if (status == OVRA_OK) {
    status =
        OvraYUsmMakeTable(format, OVRA_DEFAULT_LEVEL_POINTS, levels, OVRA_DEFAULT_DIFFERENCE_POINTS,
                          differences, level_table, difference_table);
  }
  if (status != OVRA_OK) return status;
  return OvraYUsm_Init(format, taps, weights, 2.5F, level_table, difference_table, context);
}

int main(void) {
  const OvraPixelFormatCode grey8 =
      OvraMakePixelFormat(8, 1, OVRA_MODEL_GREY, 1, OVRA_ROWS_TOP_DOWN);
  static const uint8_t edge[WIDTH] = {60,  60,  60,  60,  60,  62,  70,  95,
                                      125, 150, 158, 160, 160, 160, 160, 160};
  uint8_t picture[WIDTH * HEIGHT];
  for (int i = 0; i < WIDTH * HEIGHT; ++i) picture[i] = edge[i % WIDTH];

  OvraYUsmContext* context = NULL;
  OvraStatus status = MakeContext(grey8, &context);
  if (status == OVRA_OK) {
    status = OvraYUsm(picture, picture, WIDTH, HEIGHT, grey8, context);
  }
  OvraYUsm_Free(&context);
  if (status != OVRA_OK) {
    printf("%s\n", OvraStatusText(status));
    return 1;
  }
  for (int x = 0; x < WIDTH; ++x) printf("%d ", picture[x]);
  printf("\n");
  return 0;
}
