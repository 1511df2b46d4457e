/* SPDX-License-Identifier: MIT */
/* A photograph from file to file: reads a PNG, reduces it to 640 pixels of width, sharpens what the
   reduction has softened, and writes a PNG. Needs libpng.

     cc photograph.c $(pkg-config --cflags --libs OvraBase libpng) -o photograph
     ./photograph IN.png OUT.png */
#include <ovra/ovra.h>
#include <png.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { NEW_WIDTH = 640, CHANNELS = 3 };

typedef struct Picture {
  int32_t width;
  int32_t height;
  uint8_t* pixels; /* red, green, blue; rows without padding */
} Picture;

static int Allocate(Picture* picture) {
  picture->pixels = malloc((size_t)picture->width * (size_t)picture->height * CHANNELS);
  return picture->pixels != NULL;
}

static int Read(const char* name, Picture* picture) {
  png_image png;
  memset(&png, 0, sizeof png);
  png.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&png, name)) return 0;
  png.format = PNG_FORMAT_RGB;
  picture->width = (int32_t)png.width;
  picture->height = (int32_t)png.height;
  if (Allocate(picture) && png_image_finish_read(&png, NULL, picture->pixels, 0, NULL)) return 1;
  png_image_free(&png);
  return 0;
}

static int Write(const char* name, const Picture* picture) {
  png_image png;
  memset(&png, 0, sizeof png);
  png.version = PNG_IMAGE_VERSION;
  png.format = PNG_FORMAT_RGB;
  png.width = (png_uint_32)picture->width;
  png.height = (png_uint_32)picture->height;
  return png_image_write_to_file(&png, name, 0, picture->pixels, 0, NULL);
}

static OvraStatus Sharpen(Picture* picture, OvraPixelFormatCode format) {
  int32_t weights[OVRA_YUSM_MAX_TAPS];
  int32_t taps = 0;
  OvraResponsePoint levels[OVRA_DEFAULT_LEVEL_POINTS];
  OvraResponsePoint differences[OVRA_DEFAULT_DIFFERENCE_POINTS];
  int16_t level_table[OVRA_LEVEL_TABLE_SIZE];
  int16_t difference_table[OVRA_DIFFERENCE_TABLE_SIZE];

  OvraStatus status = OvraGaussianWeights(0.8, OVRA_YUSM_MAX_TAPS, &taps, weights);
  if (status == OVRA_OK) status = OvraDefaultCurves(levels, differences);
  if (status == OVRA_OK) {
    status =
        OvraYUsmMakeTable(format, OVRA_DEFAULT_LEVEL_POINTS, levels, OVRA_DEFAULT_DIFFERENCE_POINTS,
                          differences, level_table, difference_table);
  }
  if (status != OVRA_OK) return status;
  return OvraYUsmSingleStep(picture->pixels, picture->pixels, (uint32_t)picture->width,
                            (uint32_t)picture->height, format, taps, weights, 2.0F, level_table,
                            difference_table);
}

static OvraStatus Reduce(const Picture* photograph, Picture* reduced) {
  const OvraPixelFormatCode rgb8 =
      OvraMakePixelFormat(8, CHANNELS, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);
  const int64_t height =
      ((int64_t)photograph->height * NEW_WIDTH + photograph->width / 2) / photograph->width;
  reduced->width = NEW_WIDTH;
  reduced->height = (int32_t)height;
  if (!Allocate(reduced)) return OVRA_ERROR_NO_MEMORY;
  const OvraStatus status =
      OvraResizeImage(photograph->pixels, photograph->width, photograph->height, reduced->pixels,
                      reduced->width, reduced->height, rgb8);
  return status == OVRA_OK ? Sharpen(reduced, rgb8) : status;
}

int main(int argc, char** argv) {
  Picture photograph = {0, 0, NULL};
  Picture reduced = {0, 0, NULL};
  int done = 0;
  if (argc != 3) {
    printf("usage: photograph IN.png OUT.png\n");
  } else if (!Read(argv[1], &photograph)) {
    printf("cannot read %s\n", argv[1]);
  } else {
    const OvraStatus status = Reduce(&photograph, &reduced);
    done = status == OVRA_OK && Write(argv[2], &reduced);
    if (!done) printf("%s: %s\n", argv[2], OvraStatusText(status));
  }
  free(reduced.pixels);
  free(photograph.pixels);
  return done ? 0 : 1;
}
