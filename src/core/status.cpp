// SPDX-License-Identifier: MIT
#include "core/status.h"

OVRA_API const char* OVRA_CALL OvraStatusText(OvraStatus status) {
  switch (status) {
    case OVRA_OK:
      return "success";
    case OVRA_ERROR_NO_MEMORY:
      return "out of memory";
    case OVRA_ERROR_NULL_DECODER_OUTPUT:
      return "null output pointer of a helper";
    case OVRA_ERROR_RESIZE_NULL_IMAGE:
      return "resize: source or destination is null";
    case OVRA_ERROR_RESIZE_ZERO_SIZE:
      return "resize: source width, region width or region height is zero";
    case OVRA_ERROR_RESIZE_NULL_TABLE:
      return "resize: kernel table is null";
    case OVRA_ERROR_RESIZE_STRETCH:
      return "resize: stretch factor is not greater than zero";
    case OVRA_ERROR_RESIZE_TAP_COUNT:
      return "resize: tap count is below 4";
    case OVRA_ERROR_RESIZE_CHANNELS:
      return "resize: channel count is not 1 to 4";
    case OVRA_ERROR_RESIZE_DEPTH:
      return "resize: sample depth is above 16 bits";
    case OVRA_ERROR_RESIZE_COLOR_MODEL:
      return "resize: colour model does not fit the channel count";
    case OVRA_ERROR_RESIZE_ARRANGEMENT:
      return "resize: arrangement is not 0";
    case OVRA_ERROR_BAND_RESIZE_CHANGED:
      return "banded resize: a width or the format differs from that of the context";
    case OVRA_ERROR_RESIZE_SOURCE_SMALL:
      return "resize: source is smaller than the tap count";
    case OVRA_ERROR_RESIZE_DESTINATION_SMALL:
      return "resize: destination is smaller than the tap count";
    case OVRA_ERROR_RESIZE_REGION_SIZE:
      return "resize: region is smaller than the tap count or larger than the source";
    case OVRA_ERROR_RESIZE_REGION_OUTSIDE:
      return "resize: region reaches beyond the source";
    case OVRA_ERROR_BAND_RESIZE_POSITION:
      return "banded resize: the band does not follow the last one or reaches beyond the source";
    case OVRA_ERROR_YUSM_NULL:
      return "unsharp mask or multi-frequency processing: null pointer";
    case OVRA_ERROR_YUSM_SIZE:
      return "unsharp mask or multi-frequency processing: image is smaller than the tap count or "
             "empty";
    case OVRA_ERROR_YUSM_CHANNELS:
      return "unsharp mask or multi-frequency processing: channel count is not 1, 3 or 4";
    case OVRA_ERROR_YUSM_DEPTH:
      return "unsharp mask or multi-frequency processing: sample depth is too great";
    case OVRA_ERROR_YUSM_COLOR_MODEL:
      return "unsharp mask or multi-frequency processing: colour model not accepted";
    case OVRA_ERROR_YUSM_ARRANGEMENT:
      return "unsharp mask or multi-frequency processing: arrangement is not 0";
    case OVRA_ERROR_YUSM_TAPS:
      return "unsharp mask: tap count is not 1 to 64, or weights are missing";
    case OVRA_ERROR_YUSM_NULL_TABLE:
      return "unsharp mask: level or difference table is null";
    case OVRA_ERROR_YUSM_POINT_COUNT:
      return "unsharp mask: a response curve has no control point";
    case OVRA_ERROR_YUSM_LEVEL_CURVE:
      return "unsharp mask: level curve is out of range or not increasing";
    case OVRA_ERROR_YUSM_DIFFERENCE_CURVE:
      return "unsharp mask: difference curve is out of range or not increasing";
    case OVRA_ERROR_MULTI_FREQUENCY_PARAMETER:
      return "multi-frequency processing: a parameter is out of its range";
    case OVRA_ERROR_FORMAT_DEPTH:
      return "pixel format: unknown sample depth code";
    case OVRA_ERROR_FORMAT_CHANNELS:
      return "pixel format: unknown channel count code";
    case OVRA_ERROR_FORMAT_COLOR_MODEL:
      return "pixel format: unknown colour model";
    case OVRA_ERROR_FORMAT_ARRANGEMENT:
      return "pixel format: unknown arrangement code";
    case OVRA_ERROR_FORMAT_ROW_ALIGNMENT:
      return "pixel format: unknown row alignment code";
    case OVRA_ERROR_FORMAT_ROW_ORDER:
      return "pixel format: unknown row order flag";
    case OVRA_ERROR_CUBE_NULL:
      return "colour cube: null pointer or handle";
    case OVRA_ERROR_CUBE_ZERO_SIZE:
      return "colour cube: width or height is zero";
    case OVRA_ERROR_CUBE_GRID_COUNT:
      return "colour cube: grid count is zero or not supported";
    case OVRA_ERROR_CUBE_NULL_GRID:
      return "colour cube: grid positions are missing";
    case OVRA_ERROR_CUBE_CHANNELS:
      return "colour cube: channel count not accepted";
    case OVRA_ERROR_CUBE_INPUT_DEPTH:
      return "colour cube: input depth is above 16 bits";
    case OVRA_ERROR_CUBE_DEPTH:
      return "colour cube: sample depth is above 12 bits";
    case OVRA_ERROR_CUBE_COLOR_MODEL:
      return "colour cube: colour model or output channel count not accepted";
    case OVRA_ERROR_CUBE_ARRANGEMENT:
      return "colour cube: arrangement is not 0";
    case OVRA_ERROR_CUBE_FORMAT_CHANGED:
      return "colour cube: formats differ from those of the handle";
    case OVRA_ERROR_TABLE_NULL:
      return "channel tables: null pointer or handle";
    case OVRA_ERROR_TABLE_ZERO_SIZE:
      return "channel tables: width or height is zero";
    case OVRA_ERROR_TABLE_NULL_TABLE:
      return "channel tables: a table is missing";
    case OVRA_ERROR_TABLE_CHANNELS:
      return "channel tables: channel count is not 3";
    case OVRA_ERROR_TABLE_DEPTH:
      return "channel tables: sample depth is above 16 bits";
    case OVRA_ERROR_TABLE_COLOR_MODEL:
      return "channel tables: colour model not accepted";
    case OVRA_ERROR_TABLE_ARRANGEMENT:
      return "channel tables: arrangement is not 0";
    case OVRA_ERROR_TABLE_FORMAT_CHANGED:
      return "channel tables: formats differ from those of the handle";
    case OVRA_ERROR_COEFFICIENT_NULL:
      return "channel polynomials: null pointer or handle";
    case OVRA_ERROR_COEFFICIENT_ZERO_SIZE:
      return "channel polynomials: width or height is zero";
    case OVRA_ERROR_FORMAT_CHANGED:
      return "channel polynomials or colour matrix: formats differ from those of the handle";
    case OVRA_ERROR_MATRIX_NULL:
      return "colour matrix: null pointer or handle";
    case OVRA_ERROR_MATRIX_ZERO_SIZE:
      return "colour matrix: width or height is zero";
    case OVRA_ERROR_MATRIX_CHANNELS:
      return "colour matrix: channel count is not 3";
    case OVRA_ERROR_MATRIX_DEPTH:
      return "colour matrix: sample depth is above 16 bits";
    case OVRA_ERROR_MATRIX_COLOR_MODEL:
      return "colour matrix: colour model not accepted";
    case OVRA_ERROR_MATRIX_ARRANGEMENT:
      return "colour matrix: arrangement is not 0";
    case OVRA_ERROR_ROTATION_NULL:
      return "rotation: source or destination is null";
    case OVRA_ERROR_ROTATION_ZERO_SIZE:
      return "rotation: width or height is zero";
    case OVRA_ERROR_ROTATION_MODE:
      return "rotation: mode is not 0 to 7";
    case OVRA_ERROR_ROTATION_CHANNELS:
      return "rotation: channel count is not 1 to 4";
    case OVRA_ERROR_ROTATION_DEPTH:
      return "rotation: sample depth is above 16 bits";
    case OVRA_ERROR_ROTATION_COLOR_MODEL:
      return "rotation: colour model does not fit the channel count";
    case OVRA_ERROR_ROTATION_ARRANGEMENT:
      return "rotation: arrangement is not 0";
    case OVRA_ERROR_TRIMMING_SIZE:
      return "trimming: destination width or height is not 8 to 16383";
    case OVRA_ERROR_TRIMMING_IN_PLACE:
      return "trimming: source and destination are the same";
    case OVRA_ERROR_CASCADE_NULL:
      return "cascade: a cube or its lattice is missing";
    case OVRA_ERROR_CASCADE_GRID_COUNT:
      return "cascade: a grid count is zero";
    case OVRA_ERROR_CASCADE_NULL_GRID:
      return "cascade: grid positions are missing";
    case OVRA_ERROR_CASCADE_CONVERSION:
      return "cascade: the second cube cannot convert the first";
    case OVRA_ERROR_EXTRAPOLATION_NULL:
      return "extrapolation: source or destination is null";
    case OVRA_ERROR_EXTRAPOLATION_IN_PLACE:
      return "extrapolation: source and destination are the same buffer";
    case OVRA_ERROR_EXTRAPOLATION_SIZE:
      return "extrapolation: a size is zero or the source does not fit the destination";
    case OVRA_ERROR_EXTRAPOLATION_CHANNELS:
      return "extrapolation: channel count is not 1, 3 or 4";
    case OVRA_ERROR_EXTRAPOLATION_DEPTH:
      return "extrapolation: sample depth is above 16 bits";
    case OVRA_ERROR_EXTRAPOLATION_NULL_FILL:
      return "extrapolation: fill colour is missing";
    case OVRA_ERROR_EXTRAPOLATION_COLOR_MODEL:
      return "extrapolation: colour model not accepted";
    case OVRA_ERROR_EXTRAPOLATION_ARRANGEMENT:
      return "extrapolation: arrangement is not 0";
    case OVRA_ERROR_YUSM_DOUBLE_FORMAT:
      return "double unsharp mask: pixel format not accepted";
    case OVRA_ERROR_YUSM_DOUBLE_ARGUMENT:
      return "double unsharp mask: null pointer, or image smaller than a tap count";
    case OVRA_ERROR_YUSM_DOUBLE_TAPS:
      return "double unsharp mask: tap count is above 25";
    case OVRA_ERROR_COMPOSITE_NULL:
      return "composition: destination, source or mask is null";
    case OVRA_ERROR_COMPOSITE_IN_PLACE:
      return "composition: destination and source are the same buffer";
    case OVRA_ERROR_COMPOSITE_SIZE:
      return "composition: a size is zero or the source reaches below the destination";
    case OVRA_ERROR_COMPOSITE_CHANNELS:
      return "composition: channel count is not 1 to 4";
    case OVRA_ERROR_COMPOSITE_DEPTH:
      return "composition: sample depth is above 8 bits";
    case OVRA_ERROR_COMPOSITE_COLOR_MODEL:
      return "composition: colour model not accepted";
    case OVRA_ERROR_COMPOSITE_ARRANGEMENT:
      return "composition: arrangement is not 0";
    case OVRA_ERROR_COMPOSITE_FORMATS_DIFFER:
      return "composition: formats of source and destination differ";
    case OVRA_ERROR_COMPOSITE_CHANNEL_RELATION:
      return "composition: source has neither as many channels as the destination nor one more";
    case OVRA_ERROR_EDGE_FILTER_NULL:
      return "edge filter: source or destination is null";
    case OVRA_ERROR_EDGE_FILTER_IN_PLACE:
      return "edge filter: source and destination are the same buffer";
    case OVRA_ERROR_EDGE_FILTER_ZERO_SIZE:
      return "edge filter: width or height is zero";
    case OVRA_ERROR_EDGE_FILTER_CHANNELS:
      return "edge filter: channel count is not 3";
    case OVRA_ERROR_EDGE_FILTER_DEPTH:
      return "edge filter: sample depth is not 8 bits";
    case OVRA_ERROR_EDGE_FILTER_COLOR_MODEL:
      return "edge filter: colour model not accepted";
    case OVRA_ERROR_EDGE_FILTER_ARRANGEMENT:
      return "edge filter: arrangement is not 0";
    case OVRA_ERROR_TONE_NULL:
      return "tone processing: null pointer";
    case OVRA_ERROR_TONE_PARAMETER:
      return "tone processing: a parameter is out of its range, or the curve falls or is too high";
    case OVRA_ERROR_TONE_ZERO_SIZE:
      return "tone processing: width or height is zero";
    case OVRA_ERROR_TONE_CHANNELS:
      return "tone processing: channel count is not 3";
    case OVRA_ERROR_TONE_DEPTH:
      return "tone processing: sample depth is not 10 or 12 bits";
    case OVRA_ERROR_TONE_COLOR_MODEL:
      return "tone processing: colour model not accepted";
    case OVRA_ERROR_TONE_ARRANGEMENT:
      return "tone processing: arrangement is not 0";
    case OVRA_ERROR_TONE_CONTEXT:
      return "tone processing: the context was made for another format or form";
    case OVRA_ERROR_SOFT_FOCUS_NULL:
      return "soft focus: source, destination or parameters are missing";
    case OVRA_ERROR_RESIZE_FACTOR:
      return "resize: scale factor is below 0.33, zero or not a number";
    default:
      return "unknown status";
  }
}
