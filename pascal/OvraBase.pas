{ SPDX-License-Identifier: MIT }
{ Written by scripts/generate-bindings from the headers; not to be edited. }
{ The functions of the library as they stand in its headers, which say what each does and answers. }
unit OvraBase;

{$ifdef FPC}
{$mode objfpc}
{$endif}

interface

const
{$ifdef MSWINDOWS}
  OvraLibrary = 'OvraBase.dll';
{$else}
  OvraLibrary = 'libOvraBase.so.0';
{$endif}

  { OvraStatusCode }
  OVRA_OK = 0;
  OVRA_ERROR_NO_MEMORY = 40;
  OVRA_ERROR_NULL_DECODER_OUTPUT = 41;
  OVRA_ERROR_RESIZE_NULL_IMAGE = 101;
  OVRA_ERROR_RESIZE_ZERO_SIZE = 102;
  OVRA_ERROR_RESIZE_NULL_TABLE = 103;
  OVRA_ERROR_RESIZE_STRETCH = 104;
  OVRA_ERROR_RESIZE_TAP_COUNT = 105;
  OVRA_ERROR_RESIZE_CHANNELS = 106;
  OVRA_ERROR_RESIZE_DEPTH = 107;
  OVRA_ERROR_RESIZE_COLOR_MODEL = 108;
  OVRA_ERROR_RESIZE_ARRANGEMENT = 109;
  OVRA_ERROR_BAND_RESIZE_CHANGED = 110;
  OVRA_ERROR_RESIZE_SOURCE_SMALL = 111;
  OVRA_ERROR_RESIZE_DESTINATION_SMALL = 112;
  OVRA_ERROR_RESIZE_REGION_SIZE = 113;
  OVRA_ERROR_RESIZE_REGION_OUTSIDE = 114;
  OVRA_ERROR_BAND_RESIZE_POSITION = 115;
  OVRA_ERROR_YUSM_NULL = 116;
  OVRA_ERROR_YUSM_SIZE = 117;
  OVRA_ERROR_YUSM_CHANNELS = 118;
  OVRA_ERROR_YUSM_DEPTH = 119;
  OVRA_ERROR_YUSM_COLOR_MODEL = 120;
  OVRA_ERROR_YUSM_ARRANGEMENT = 121;
  OVRA_ERROR_YUSM_TAPS = 122;
  OVRA_ERROR_YUSM_NULL_TABLE = 123;
  OVRA_ERROR_YUSM_POINT_COUNT = 124;
  OVRA_ERROR_YUSM_LEVEL_CURVE = 125;
  OVRA_ERROR_YUSM_DIFFERENCE_CURVE = 126;
  OVRA_ERROR_MULTI_FREQUENCY_PARAMETER = 127;
  OVRA_ERROR_FORMAT_DEPTH = 129;
  OVRA_ERROR_FORMAT_CHANNELS = 130;
  OVRA_ERROR_FORMAT_COLOR_MODEL = 131;
  OVRA_ERROR_FORMAT_ARRANGEMENT = 132;
  OVRA_ERROR_FORMAT_ROW_ALIGNMENT = 133;
  OVRA_ERROR_FORMAT_ROW_ORDER = 134;
  OVRA_ERROR_CUBE_NULL = 140;
  OVRA_ERROR_CUBE_ZERO_SIZE = 141;
  OVRA_ERROR_CUBE_GRID_COUNT = 142;
  OVRA_ERROR_CUBE_NULL_GRID = 143;
  OVRA_ERROR_CUBE_CHANNELS = 145;
  OVRA_ERROR_CUBE_INPUT_DEPTH = 146;
  OVRA_ERROR_CUBE_DEPTH = 147;
  OVRA_ERROR_CUBE_COLOR_MODEL = 148;
  OVRA_ERROR_CUBE_ARRANGEMENT = 149;
  OVRA_ERROR_CUBE_FORMAT_CHANGED = 150;
  OVRA_ERROR_TABLE_NULL = 152;
  OVRA_ERROR_TABLE_ZERO_SIZE = 153;
  OVRA_ERROR_TABLE_NULL_TABLE = 154;
  OVRA_ERROR_TABLE_CHANNELS = 155;
  OVRA_ERROR_TABLE_DEPTH = 156;
  OVRA_ERROR_TABLE_COLOR_MODEL = 157;
  OVRA_ERROR_TABLE_ARRANGEMENT = 158;
  OVRA_ERROR_TABLE_FORMAT_CHANGED = 159;
  OVRA_ERROR_COEFFICIENT_NULL = 161;
  OVRA_ERROR_COEFFICIENT_ZERO_SIZE = 162;
  OVRA_ERROR_FORMAT_CHANGED = 163;
  OVRA_ERROR_MATRIX_NULL = 164;
  OVRA_ERROR_MATRIX_ZERO_SIZE = 165;
  OVRA_ERROR_MATRIX_CHANNELS = 166;
  OVRA_ERROR_MATRIX_DEPTH = 167;
  OVRA_ERROR_MATRIX_COLOR_MODEL = 168;
  OVRA_ERROR_MATRIX_ARRANGEMENT = 169;
  OVRA_ERROR_ROTATION_NULL = 172;
  OVRA_ERROR_ROTATION_ZERO_SIZE = 173;
  OVRA_ERROR_ROTATION_MODE = 174;
  OVRA_ERROR_ROTATION_CHANNELS = 175;
  OVRA_ERROR_ROTATION_DEPTH = 176;
  OVRA_ERROR_ROTATION_COLOR_MODEL = 177;
  OVRA_ERROR_ROTATION_ARRANGEMENT = 178;
  OVRA_ERROR_TRIMMING_SIZE = 179;
  OVRA_ERROR_TRIMMING_IN_PLACE = 180;
  OVRA_ERROR_CASCADE_NULL = 184;
  OVRA_ERROR_CASCADE_GRID_COUNT = 185;
  OVRA_ERROR_CASCADE_NULL_GRID = 186;
  OVRA_ERROR_CASCADE_CONVERSION = 187;
  OVRA_ERROR_EXTRAPOLATION_NULL = 192;
  OVRA_ERROR_EXTRAPOLATION_IN_PLACE = 193;
  OVRA_ERROR_EXTRAPOLATION_SIZE = 194;
  OVRA_ERROR_EXTRAPOLATION_CHANNELS = 195;
  OVRA_ERROR_EXTRAPOLATION_DEPTH = 196;
  OVRA_ERROR_EXTRAPOLATION_NULL_FILL = 197;
  OVRA_ERROR_EXTRAPOLATION_COLOR_MODEL = 198;
  OVRA_ERROR_EXTRAPOLATION_ARRANGEMENT = 199;
  OVRA_ERROR_YUSM_DOUBLE_FORMAT = 201;
  OVRA_ERROR_YUSM_DOUBLE_ARGUMENT = 202;
  OVRA_ERROR_YUSM_DOUBLE_TAPS = 203;
  OVRA_ERROR_COMPOSITE_NULL = 220;
  OVRA_ERROR_COMPOSITE_IN_PLACE = 221;
  OVRA_ERROR_COMPOSITE_SIZE = 222;
  OVRA_ERROR_COMPOSITE_CHANNELS = 223;
  OVRA_ERROR_COMPOSITE_DEPTH = 224;
  OVRA_ERROR_COMPOSITE_COLOR_MODEL = 225;
  OVRA_ERROR_COMPOSITE_ARRANGEMENT = 226;
  OVRA_ERROR_COMPOSITE_FORMATS_DIFFER = 227;
  OVRA_ERROR_COMPOSITE_CHANNEL_RELATION = 228;
  OVRA_ERROR_EDGE_FILTER_NULL = 230;
  OVRA_ERROR_EDGE_FILTER_IN_PLACE = 231;
  OVRA_ERROR_EDGE_FILTER_ZERO_SIZE = 232;
  OVRA_ERROR_EDGE_FILTER_CHANNELS = 233;
  OVRA_ERROR_EDGE_FILTER_DEPTH = 234;
  OVRA_ERROR_EDGE_FILTER_COLOR_MODEL = 235;
  OVRA_ERROR_EDGE_FILTER_ARRANGEMENT = 236;
  OVRA_ERROR_TONE_NULL = 250;
  OVRA_ERROR_TONE_PARAMETER = 251;
  OVRA_ERROR_TONE_ZERO_SIZE = 252;
  OVRA_ERROR_TONE_CHANNELS = 253;
  OVRA_ERROR_TONE_DEPTH = 254;
  OVRA_ERROR_TONE_COLOR_MODEL = 255;
  OVRA_ERROR_TONE_ARRANGEMENT = 256;
  OVRA_ERROR_TONE_CONTEXT = 257;
  OVRA_ERROR_SOFT_FOCUS_NULL = 267;
  OVRA_ERROR_RESIZE_FACTOR = 299;

  { OvraColorModel }
  OVRA_MODEL_GREY = 0;
  OVRA_MODEL_RGB = 256;
  OVRA_MODEL_BGR = 512;
  OVRA_MODEL_YCC = 768;
  OVRA_MODEL_TRIPLE_4 = 1024;
  OVRA_MODEL_TRIPLE_5 = 1280;
  OVRA_MODEL_TRIPLE_6 = 1536;
  OVRA_MODEL_TRIPLE_7 = 1792;
  OVRA_MODEL_RGBA = 4096;
  OVRA_MODEL_BGRA = 4352;
  OVRA_MODEL_CMYK = 4608;

  { OvraRowOrder }
  OVRA_ROWS_TOP_DOWN = 0;
  OVRA_ROWS_BOTTOM_UP = 16777216;

  { OvraBlendMode }
  OVRA_BLEND_WEIGHT_OF_DESTINATION = 0;
  OVRA_BLEND_WEIGHT_OF_SOURCE = 1;

  OVRA_LEVEL_TABLE_SIZE = 1024;
  OVRA_DIFFERENCE_TABLE_SIZE = 2048;

  OVRA_YUSM_MAX_TAPS = 64;

  OVRA_DEFAULT_LEVEL_POINTS = 4;
  OVRA_DEFAULT_DIFFERENCE_POINTS = 10;

  OVRA_YUSM_DOUBLE_MAX_TAPS = 25;

  OVRA_MULTI_FREQUENCY_MAX_BANDS = 8;

  { OvraRotation }
  OVRA_ROTATE_NONE = 0;
  OVRA_ROTATE_QUARTER_LEFT = 1;
  OVRA_ROTATE_HALF = 2;
  OVRA_ROTATE_QUARTER_RIGHT = 3;
  OVRA_ROTATE_MIRROR = 4;
  OVRA_ROTATE_ANTI_TRANSPOSE = 5;
  OVRA_ROTATE_FLIP = 6;
  OVRA_ROTATE_TRANSPOSE = 7;

  OVRA_KERNEL_TABLE_STEPS = 4096;
  OVRA_KERNEL_TABLE_ENTRIES = 16384;

type
  TOvraStatus = LongInt;
  POvraStatus = ^TOvraStatus;
  TOvraPixelFormatCode = LongWord;
  POvraPixelFormatCode = ^TOvraPixelFormatCode;
  TOvraYUsmContext = record end;
  POvraYUsmContext = ^TOvraYUsmContext;
  PPOvraYUsmContext = ^POvraYUsmContext;
  TOvraYUsmDoubleContext = record end;
  POvraYUsmDoubleContext = ^TOvraYUsmDoubleContext;
  PPOvraYUsmDoubleContext = ^POvraYUsmDoubleContext;
  TOvraBandResizeContext = record end;
  POvraBandResizeContext = ^TOvraBandResizeContext;
  PPOvraBandResizeContext = ^POvraBandResizeContext;

{$packrecords C}
  TOvraColorCube = record
    count0: LongWord;
    grid0: PWord;
    count1: LongWord;
    grid1: PWord;
    count2: LongWord;
    grid2: PWord;
    lattice: PWord;
  end;
  POvraColorCube = ^TOvraColorCube;

{$packrecords C}
  TOvraChannelTableSet = record
    table: array[0..2] of PWord;
  end;
  POvraChannelTableSet = ^TOvraChannelTableSet;

{$packrecords C}
  TOvraChannelPolynomial = record
    c0: Double;
    c1: Double;
    c2: Double;
    reserved: Double;
  end;
  POvraChannelPolynomial = ^TOvraChannelPolynomial;

{$packrecords 4}
  TOvraColorMatrix = record
    rows: array[0..2] of array[0..9] of Double;
    reserved: LongWord;
  end;
  POvraColorMatrix = ^TOvraColorMatrix;

{$packrecords C}
  TOvraResponsePoint = record
    x: Double;
    y: Double;
  end;
  POvraResponsePoint = ^TOvraResponsePoint;

{$packrecords C}
  TOvraSoftFocusParams = record
    radius: LongInt;
    decay_exponent: LongInt;
    decay_base: Double;
    reserved: array[0..15] of Byte;
    mix: Double;
  end;
  POvraSoftFocusParams = ^TOvraSoftFocusParams;

{$packrecords C}
  TOvraMultiFrequencyBand = record
    gain: Single;
    noise: Single;
    damping: Single;
    limit: Single;
  end;
  POvraMultiFrequencyBand = ^TOvraMultiFrequencyBand;

{$packrecords C}
  TOvraMultiFrequencyParams = record
    band_count: LongWord;
    base_gain: Single;
    pivot: Single;
    reserved: LongWord;
    band: array[0..7] of TOvraMultiFrequencyBand;
  end;
  POvraMultiFrequencyParams = ^TOvraMultiFrequencyParams;

{$packrecords C}
  TOvraHyperToneParams = record
    amount: Single;
    shadows: Single;
    highlights: Single;
    local_contrast: Single;
    edge: Single;
    colour: Single;
    scale: LongInt;
    reserved: LongWord;
  end;
  POvraHyperToneParams = ^TOvraHyperToneParams;

function OvraBandResize(source: PByte; source_width: LongInt; source_rows: LongInt;
  destination: PByte; destination_width: LongInt; destination_rows: LongInt;
  format: TOvraPixelFormatCode; first_row: LongInt; rows_taken: PLongInt; rows_written: PLongInt;
  context: POvraBandResizeContext): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraBandResizeCore_Init(source_width: LongInt; source_height: LongInt;
  destination_width: LongInt; destination_height: LongInt; format: TOvraPixelFormatCode;
  x: LongInt; y: LongInt; width: LongInt; height: LongInt; kernel_table: PSingle; stretch: Single;
  taps: LongInt; context: PPOvraBandResizeContext): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraBandResize_Free(context: PPOvraBandResizeContext): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraBandResize_Init(source_width: LongInt; source_height: LongInt;
  destination_width: LongInt; destination_height: LongInt; format: TOvraPixelFormatCode;
  x: LongInt; y: LongInt; width: LongInt; height: LongInt; context: PPOvraBandResizeContext
  ): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraCalcBSpline(b: Single; table: PSingle): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraCalcCubicSpline(a: Single; table: PSingle): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraCascade3D(first: POvraColorCube; second: POvraColorCube): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraCompositeImage(destination: PByte; destination_width: LongInt;
  destination_height: LongInt; destination_format: TOvraPixelFormatCode; source: PByte;
  source_width: LongInt; source_height: LongInt; source_format: TOvraPixelFormatCode; x: LongInt;
  y: LongInt; blend_mode: Byte): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraCompositeImageWithMaskBlending(destination: PByte; destination_width: LongInt;
  destination_height: LongInt; source: PByte; mask: PByte; source_width: LongInt;
  source_height: LongInt; format: TOvraPixelFormatCode; x: LongInt; y: LongInt; blend_mode: Byte
  ): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColor1DTbl(source: PByte; destination: PByte; width: LongInt; height: LongInt;
  in_format: TOvraPixelFormatCode; out_format: TOvraPixelFormatCode; handle: PtrUInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColor1DTblSingleStep(source: PByte; destination: PByte; width: LongInt;
  height: LongInt; in_format: TOvraPixelFormatCode; out_format: TOvraPixelFormatCode;
  tables: POvraChannelTableSet): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColor1DTbl_Free(handle: PPtrUInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColor1DTbl_Init(in_format: TOvraPixelFormatCode; out_format: TOvraPixelFormatCode;
  tables: POvraChannelTableSet; handle_out: PPtrUInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColorCoef(source: PByte; destination: PByte; width: LongInt; height: LongInt;
  in_format: TOvraPixelFormatCode; out_format: TOvraPixelFormatCode; handle: PtrUInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColorCoefSingleStep(source: PByte; destination: PByte; width: LongInt;
  height: LongInt; in_format: TOvraPixelFormatCode; out_format: TOvraPixelFormatCode;
  coefficients: POvraChannelPolynomial): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColorCoef_Free(handle: PPtrUInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColorCoef_Init(in_format: TOvraPixelFormatCode; out_format: TOvraPixelFormatCode;
  coefficients: POvraChannelPolynomial; handle_out: PPtrUInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColorCube(source: PByte; destination: PByte; width: LongInt; height: LongInt;
  in_format: TOvraPixelFormatCode; out_format: TOvraPixelFormatCode; handle: PtrUInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColorCubeSingleStep(source: PByte; destination: PByte; width: LongInt;
  height: LongInt; in_format: TOvraPixelFormatCode; out_format: TOvraPixelFormatCode;
  cube: POvraColorCube): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColorCube_Free(handle: PPtrUInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColorCube_Init(in_format: TOvraPixelFormatCode; out_format: TOvraPixelFormatCode;
  cube: POvraColorCube; handle_out: PPtrUInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColorMtx(source: PByte; destination: PByte; width: LongInt; height: LongInt;
  in_format: TOvraPixelFormatCode; out_format: TOvraPixelFormatCode; handle: PtrUInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColorMtxSingleStep(source: PByte; destination: PByte; width: LongInt;
  height: LongInt; in_format: TOvraPixelFormatCode; out_format: TOvraPixelFormatCode;
  matrix: POvraColorMatrix): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColorMtx_Free(handle: PPtrUInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraConvColorMtx_Init(in_format: TOvraPixelFormatCode; out_format: TOvraPixelFormatCode;
  matrix: POvraColorMatrix; handle_out: PPtrUInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraDefaultCurves(level_points: POvraResponsePoint; difference_points: POvraResponsePoint
  ): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

procedure OvraDib2Raw(dib: PByte; raw: PByte; width: LongWord; height: LongWord);
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraEFilterImage(source: PByte; destination: PByte; width: LongWord; height: LongWord;
  format: TOvraPixelFormatCode): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraExtrapolateImage(source: PByte; source_width: LongWord; source_height: LongWord;
  destination: PByte; destination_width: LongWord; destination_height: LongWord;
  format: TOvraPixelFormatCode; offset_x: LongInt; offset_y: LongInt; fill: PWord): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraFreeTrimming(source: PByte; source_width: LongInt; source_height: LongInt;
  destination: PByte; destination_width: LongInt; destination_height: LongInt;
  format: TOvraPixelFormatCode; x: LongInt; y: LongInt; angle: LongInt; fill: PWord): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraGaussianWeights(radius: Double; max_taps: LongInt; tap_count: PLongInt;
  weights: PLongInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraGetVersion: LongWord;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHybridHyperTone(source: PByte; destination: PByte; width: LongWord; height: LongWord;
  format: TOvraPixelFormatCode; context: Pointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHybridHyperToneLight(source: PByte; destination: PByte; width: LongWord;
  height: LongWord; format: TOvraPixelFormatCode; context: Pointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHybridHyperToneLight_Free(context: PPointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHybridHyperToneLight_Init(format: TOvraPixelFormatCode; params: POvraHyperToneParams;
  curve: PWord; context: PPointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHybridHyperToneLight_Init_12(format: TOvraPixelFormatCode;
  params: POvraHyperToneParams; curve: PWord; context: PPointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHybridHyperTone_Free(context: PPointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHybridHyperTone_Init(format: TOvraPixelFormatCode; params: POvraHyperToneParams;
  curve: PWord; context: PPointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHybridHyperTone_Init_12(format: TOvraPixelFormatCode; params: POvraHyperToneParams;
  curve: PWord; context: PPointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHyperTone(source: PByte; destination: PByte; width: LongWord; height: LongWord;
  format: TOvraPixelFormatCode; context: Pointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHyperToneLight(source: PByte; destination: PByte; width: LongWord; height: LongWord;
  format: TOvraPixelFormatCode; context: Pointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHyperToneLight_Free(context: PPointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHyperToneLight_Init(format: TOvraPixelFormatCode; params: POvraHyperToneParams;
  curve: PWord; context: PPointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHyperToneLight_Init_12(format: TOvraPixelFormatCode; params: POvraHyperToneParams;
  curve: PWord; context: PPointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHyperTone_Free(context: PPointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHyperTone_Init(format: TOvraPixelFormatCode; params: POvraHyperToneParams;
  curve: PWord; context: PPointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraHyperTone_Init_12(format: TOvraPixelFormatCode; params: POvraHyperToneParams;
  curve: PWord; context: PPointer): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraMakePixelFormatCode(depth_bits: LongWord; channels: LongWord; color_model: LongWord;
  row_alignment: LongWord; row_order: LongWord; format: POvraPixelFormatCode): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraMultiFrequency(source: PByte; destination: PByte; width: LongWord; height: LongWord;
  format: TOvraPixelFormatCode; params: POvraMultiFrequencyParams): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

procedure OvraRaw2Dib(raw: PByte; dib: PByte; width: LongWord; height: LongWord);
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraResizeImage(source: PByte; source_width: LongInt; source_height: LongInt;
  destination: PByte; destination_width: LongInt; destination_height: LongInt;
  format: TOvraPixelFormatCode): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraResizeImageCore(source: PByte; source_width: LongInt; source_height: LongInt;
  destination: PByte; destination_width: LongInt; destination_height: LongInt;
  format: TOvraPixelFormatCode; x: LongInt; y: LongInt; width: LongInt; height: LongInt;
  kernel_table: PSingle; stretch: Single; taps: LongInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraResizeImageCoreVAR(source: PByte; source_width: LongInt; source_height: LongInt;
  destination: PByte; destination_width: LongInt; destination_height: LongInt;
  format: TOvraPixelFormatCode; x: LongInt; y: LongInt; width: LongInt; height: LongInt;
  horizontal_factor: Double; vertical_factor: Double; kernel_table: PSingle;
  horizontal_stretch: Single; vertical_stretch: Single; horizontal_taps: LongInt;
  vertical_taps: LongInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraResizeImageROI(source: PByte; source_width: LongInt; source_height: LongInt;
  destination: PByte; destination_width: LongInt; destination_height: LongInt;
  format: TOvraPixelFormatCode; x: LongInt; y: LongInt; width: LongInt; height: LongInt
  ): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraResizeImageROIVAR(source: PByte; source_width: LongInt; source_height: LongInt;
  destination: PByte; destination_width: LongInt; destination_height: LongInt;
  format: TOvraPixelFormatCode; x: LongInt; y: LongInt; width: LongInt; height: LongInt;
  horizontal_factor: Double; vertical_factor: Double): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraResizeImageVAR(source: PByte; source_width: LongInt; source_height: LongInt;
  destination: PByte; destination_width: LongInt; destination_height: LongInt;
  format: TOvraPixelFormatCode; horizontal_factor: Double; vertical_factor: Double): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraResizeRotateImageCore(source: PByte; source_width: LongInt; source_height: LongInt;
  destination: PByte; destination_width: LongInt; destination_height: LongInt;
  format: TOvraPixelFormatCode; x: LongInt; y: LongInt; width: LongInt; height: LongInt;
  kernel_table: PSingle; stretch: Single; taps: LongInt; mode: LongInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraResizeRotateImageROI(source: PByte; source_width: LongInt; source_height: LongInt;
  destination: PByte; destination_width: LongInt; destination_height: LongInt;
  format: TOvraPixelFormatCode; x: LongInt; y: LongInt; width: LongInt; height: LongInt;
  mode: LongInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraRotateImage(source: PByte; destination: PByte; width: LongInt; height: LongInt;
  format: TOvraPixelFormatCode; mode: LongInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraRowStride(width: LongWord; format: TOvraPixelFormatCode; stride: PPtrUInt
  ): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraSelectKernelSupport(ratio: Single; taps: PLongInt; stretch: PSingle): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraSmallResizeImage(source: PByte; source_width: LongInt; source_height: LongInt;
  destination: PByte; destination_width: LongInt; destination_height: LongInt;
  format: TOvraPixelFormatCode; x: LongInt; y: LongInt; width: LongInt; height: LongInt;
  kernel_table: PSingle): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraSmallResizeRotateImage(source: PByte; source_width: LongInt; source_height: LongInt;
  destination: PByte; destination_width: LongInt; destination_height: LongInt;
  format: TOvraPixelFormatCode; x: LongInt; y: LongInt; width: LongInt; height: LongInt;
  kernel_table: PSingle; mode: LongInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraSoftFocus(source: PByte; destination: PByte; width: LongWord; height: LongWord;
  params: POvraSoftFocusParams): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraStatusText(status: TOvraStatus): PAnsiChar;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraYUsm(source: PByte; destination: PByte; width: LongWord; height: LongWord;
  format: TOvraPixelFormatCode; context: POvraYUsmContext): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraYUsmDouble(source: PByte; destination: PByte; width: LongWord; height: LongWord;
  format: TOvraPixelFormatCode; context: POvraYUsmDoubleContext): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraYUsmDoubleSingleStep(source: PByte; destination: PByte; width: LongWord;
  height: LongWord; format: TOvraPixelFormatCode; tap_count1: LongWord; weights1: PLongInt;
  tap_count2: LongWord; weights2: PLongInt; amount1: Single; level_table1: PSmallInt;
  difference_table1: PSmallInt; amount2: Single; level_table2: PSmallInt;
  difference_table2: PSmallInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraYUsmDouble_Free(context: PPOvraYUsmDoubleContext): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraYUsmDouble_Init(format: TOvraPixelFormatCode; tap_count1: LongWord;
  weights1: PLongInt; tap_count2: LongWord; weights2: PLongInt; amount1: Single;
  level_table1: PSmallInt; difference_table1: PSmallInt; amount2: Single; level_table2: PSmallInt;
  difference_table2: PSmallInt; context: PPOvraYUsmDoubleContext): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraYUsmMakeTable(format: TOvraPixelFormatCode; level_point_count: LongInt;
  level_points: POvraResponsePoint; difference_point_count: LongInt;
  difference_points: POvraResponsePoint; level_table: PSmallInt; difference_table: PSmallInt
  ): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraYUsmSingleStep(source: PByte; destination: PByte; width: LongWord; height: LongWord;
  format: TOvraPixelFormatCode; tap_count: LongInt; weights: PLongInt; amount: Single;
  level_table: PSmallInt; difference_table: PSmallInt): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraYUsm_Free(context: PPOvraYUsmContext): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

function OvraYUsm_Init(format: TOvraPixelFormatCode; tap_count: LongInt; weights: PLongInt;
  amount: Single; level_table: PSmallInt; difference_table: PSmallInt; context: PPOvraYUsmContext
  ): TOvraStatus;
  {$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}; external OvraLibrary;

implementation

end.
