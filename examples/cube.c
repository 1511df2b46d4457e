/* SPDX-License-Identifier: MIT */
/* Converts colours through a cube of 2 x 2 x 2 nodes that exchanges red and blue, and inverts green. */
#include <ovra/ovra.h>
#include <stdio.h>

enum { POINTS = 2 };

static void FillLattice(uint16_t lattice[POINTS][POINTS][POINTS][3]) {
  for (int red = 0; red < POINTS; ++red) {
    for (int green = 0; green < POINTS; ++green) {
      for (int blue = 0; blue < POINTS; ++blue) {
        uint16_t* node = lattice[red][green][blue];
        node[0] = (uint16_t)(blue * 255);
        node[1] = (uint16_t)(255 - green * 255);
        node[2] = (uint16_t)(red * 255);
      }
    }
  }
}

int main(void) {
  const OvraPixelFormatCode rgb8 = OvraMakePixelFormat(8, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);
  const uint8_t pixels[2 * 3] = {250, 100, 0, 0, 255, 128};
  uint8_t converted[2 * 3] = {0};
  uint16_t lattice[POINTS][POINTS][POINTS][3];
  const uint16_t grid[POINTS] = {0, 255};
  const OvraColorCube cube = {POINTS, grid, POINTS, grid, POINTS, grid, &lattice[0][0][0][0]};
  FillLattice(lattice);

  uintptr_t handle = 0;
  OvraStatus status = OvraConvColorCube_Init(rgb8, rgb8, &cube, &handle);
  if (status == OVRA_OK) {
    status = OvraConvColorCube(pixels, converted, 2, 1, rgb8, rgb8, handle);
    OvraConvColorCube_Free(&handle);
  }
  if (status != OVRA_OK) {
    printf("%s\n", OvraStatusText(status));
    return 1;
  }
  for (int i = 0; i < 6; ++i) printf("%s%d", i == 3 ? " | " : " ", converted[i]);
  printf("\n");
  return 0;
}
