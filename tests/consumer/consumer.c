/* SPDX-License-Identifier: MIT */
/* The smallest host in C: converts one pixel and asks for version and status text. */
#include <ovra/ovra.h>
#include <stdio.h>
#include <string.h>

int main(void) {
  const uint8_t raw[3] = {1, 2, 3};
  const uint8_t expected[4] = {3, 2, 1, 0};
  uint8_t dib[4] = {9, 9, 9, 9};
  OvraRaw2Dib(raw, dib, 1, 1);
  printf("version %06x, status 0 is \"%s\"\n", (unsigned)OvraGetVersion(), OvraStatusText(OVRA_OK));
  return memcmp(dib, expected, sizeof dib) != 0;
}
