# SPDX-License-Identifier: MIT
# Written by scripts/generate-bindings from the headers; not to be edited.
"""The functions of the library as they stand in its headers, under names in snake case.

Arguments are what ctypes takes: numbers, and pointers as ctypes objects, addresses or None. The
headers say what each function does and answers.
"""

import ctypes
import enum


class StatusCode(enum.IntEnum):
    OK = 0
    ERROR_NO_MEMORY = 40
    ERROR_NULL_DECODER_OUTPUT = 41
    ERROR_RESIZE_NULL_IMAGE = 101
    ERROR_RESIZE_ZERO_SIZE = 102
    ERROR_RESIZE_NULL_TABLE = 103
    ERROR_RESIZE_STRETCH = 104
    ERROR_RESIZE_TAP_COUNT = 105
    ERROR_RESIZE_CHANNELS = 106
    ERROR_RESIZE_DEPTH = 107
    ERROR_RESIZE_COLOR_MODEL = 108
    ERROR_RESIZE_ARRANGEMENT = 109
    ERROR_BAND_RESIZE_CHANGED = 110
    ERROR_RESIZE_SOURCE_SMALL = 111
    ERROR_RESIZE_DESTINATION_SMALL = 112
    ERROR_RESIZE_REGION_SIZE = 113
    ERROR_RESIZE_REGION_OUTSIDE = 114
    ERROR_BAND_RESIZE_POSITION = 115
    ERROR_YUSM_NULL = 116
    ERROR_YUSM_SIZE = 117
    ERROR_YUSM_CHANNELS = 118
    ERROR_YUSM_DEPTH = 119
    ERROR_YUSM_COLOR_MODEL = 120
    ERROR_YUSM_ARRANGEMENT = 121
    ERROR_YUSM_TAPS = 122
    ERROR_YUSM_NULL_TABLE = 123
    ERROR_YUSM_POINT_COUNT = 124
    ERROR_YUSM_LEVEL_CURVE = 125
    ERROR_YUSM_DIFFERENCE_CURVE = 126
    ERROR_MULTI_FREQUENCY_PARAMETER = 127
    ERROR_FORMAT_DEPTH = 129
    ERROR_FORMAT_CHANNELS = 130
    ERROR_FORMAT_COLOR_MODEL = 131
    ERROR_FORMAT_ARRANGEMENT = 132
    ERROR_FORMAT_ROW_ALIGNMENT = 133
    ERROR_FORMAT_ROW_ORDER = 134
    ERROR_CUBE_NULL = 140
    ERROR_CUBE_ZERO_SIZE = 141
    ERROR_CUBE_GRID_COUNT = 142
    ERROR_CUBE_NULL_GRID = 143
    ERROR_CUBE_CHANNELS = 145
    ERROR_CUBE_INPUT_DEPTH = 146
    ERROR_CUBE_DEPTH = 147
    ERROR_CUBE_COLOR_MODEL = 148
    ERROR_CUBE_ARRANGEMENT = 149
    ERROR_CUBE_FORMAT_CHANGED = 150
    ERROR_TABLE_NULL = 152
    ERROR_TABLE_ZERO_SIZE = 153
    ERROR_TABLE_NULL_TABLE = 154
    ERROR_TABLE_CHANNELS = 155
    ERROR_TABLE_DEPTH = 156
    ERROR_TABLE_COLOR_MODEL = 157
    ERROR_TABLE_ARRANGEMENT = 158
    ERROR_TABLE_FORMAT_CHANGED = 159
    ERROR_COEFFICIENT_NULL = 161
    ERROR_COEFFICIENT_ZERO_SIZE = 162
    ERROR_FORMAT_CHANGED = 163
    ERROR_MATRIX_NULL = 164
    ERROR_MATRIX_ZERO_SIZE = 165
    ERROR_MATRIX_CHANNELS = 166
    ERROR_MATRIX_DEPTH = 167
    ERROR_MATRIX_COLOR_MODEL = 168
    ERROR_MATRIX_ARRANGEMENT = 169
    ERROR_ROTATION_NULL = 172
    ERROR_ROTATION_ZERO_SIZE = 173
    ERROR_ROTATION_MODE = 174
    ERROR_ROTATION_CHANNELS = 175
    ERROR_ROTATION_DEPTH = 176
    ERROR_ROTATION_COLOR_MODEL = 177
    ERROR_ROTATION_ARRANGEMENT = 178
    ERROR_TRIMMING_SIZE = 179
    ERROR_TRIMMING_IN_PLACE = 180
    ERROR_CASCADE_NULL = 184
    ERROR_CASCADE_GRID_COUNT = 185
    ERROR_CASCADE_NULL_GRID = 186
    ERROR_CASCADE_CONVERSION = 187
    ERROR_EXTRAPOLATION_NULL = 192
    ERROR_EXTRAPOLATION_IN_PLACE = 193
    ERROR_EXTRAPOLATION_SIZE = 194
    ERROR_EXTRAPOLATION_CHANNELS = 195
    ERROR_EXTRAPOLATION_DEPTH = 196
    ERROR_EXTRAPOLATION_NULL_FILL = 197
    ERROR_EXTRAPOLATION_COLOR_MODEL = 198
    ERROR_EXTRAPOLATION_ARRANGEMENT = 199
    ERROR_YUSM_DOUBLE_FORMAT = 201
    ERROR_YUSM_DOUBLE_ARGUMENT = 202
    ERROR_YUSM_DOUBLE_TAPS = 203
    ERROR_COMPOSITE_NULL = 220
    ERROR_COMPOSITE_IN_PLACE = 221
    ERROR_COMPOSITE_SIZE = 222
    ERROR_COMPOSITE_CHANNELS = 223
    ERROR_COMPOSITE_DEPTH = 224
    ERROR_COMPOSITE_COLOR_MODEL = 225
    ERROR_COMPOSITE_ARRANGEMENT = 226
    ERROR_COMPOSITE_FORMATS_DIFFER = 227
    ERROR_COMPOSITE_CHANNEL_RELATION = 228
    ERROR_EDGE_FILTER_NULL = 230
    ERROR_EDGE_FILTER_IN_PLACE = 231
    ERROR_EDGE_FILTER_ZERO_SIZE = 232
    ERROR_EDGE_FILTER_CHANNELS = 233
    ERROR_EDGE_FILTER_DEPTH = 234
    ERROR_EDGE_FILTER_COLOR_MODEL = 235
    ERROR_EDGE_FILTER_ARRANGEMENT = 236
    ERROR_TONE_NULL = 250
    ERROR_TONE_PARAMETER = 251
    ERROR_TONE_ZERO_SIZE = 252
    ERROR_TONE_CHANNELS = 253
    ERROR_TONE_DEPTH = 254
    ERROR_TONE_COLOR_MODEL = 255
    ERROR_TONE_ARRANGEMENT = 256
    ERROR_TONE_CONTEXT = 257
    ERROR_SOFT_FOCUS_NULL = 267
    ERROR_RESIZE_FACTOR = 299


class ColorModel(enum.IntEnum):
    GREY = 0
    RGB = 256
    BGR = 512
    YCC = 768
    TRIPLE_4 = 1024
    TRIPLE_5 = 1280
    TRIPLE_6 = 1536
    TRIPLE_7 = 1792
    RGBA = 4096
    BGRA = 4352
    CMYK = 4608


class RowOrder(enum.IntEnum):
    TOP_DOWN = 0
    BOTTOM_UP = 16777216


class BlendMode(enum.IntEnum):
    DESTINATION = 0
    SOURCE = 1

LEVEL_TABLE_SIZE = 1024
DIFFERENCE_TABLE_SIZE = 2048

YUSM_MAX_TAPS = 64

DEFAULT_LEVEL_POINTS = 4
DEFAULT_DIFFERENCE_POINTS = 10

YUSM_DOUBLE_MAX_TAPS = 25

MULTI_FREQUENCY_MAX_BANDS = 8


class Rotation(enum.IntEnum):
    NONE = 0
    QUARTER_LEFT = 1
    HALF = 2
    QUARTER_RIGHT = 3
    MIRROR = 4
    ANTI_TRANSPOSE = 5
    FLIP = 6
    TRANSPOSE = 7

KERNEL_TABLE_STEPS = 4096
KERNEL_TABLE_ENTRIES = 16384


class ColorCube(ctypes.Structure):
    _fields_ = [
        ("count0", ctypes.c_uint32),
        ("grid0", ctypes.c_void_p),
        ("count1", ctypes.c_uint32),
        ("grid1", ctypes.c_void_p),
        ("count2", ctypes.c_uint32),
        ("grid2", ctypes.c_void_p),
        ("lattice", ctypes.c_void_p),
    ]


class ChannelTableSet(ctypes.Structure):
    _fields_ = [
        ("table", ctypes.c_void_p * 3),
    ]


class ChannelPolynomial(ctypes.Structure):
    _fields_ = [
        ("c0", ctypes.c_double),
        ("c1", ctypes.c_double),
        ("c2", ctypes.c_double),
        ("reserved", ctypes.c_double),
    ]


class ColorMatrix(ctypes.Structure):
    _pack_ = 4
    _fields_ = [
        ("rows", (ctypes.c_double * 10) * 3),
        ("reserved", ctypes.c_uint32),
    ]


class ResponsePoint(ctypes.Structure):
    _fields_ = [
        ("x", ctypes.c_double),
        ("y", ctypes.c_double),
    ]


class SoftFocusParams(ctypes.Structure):
    _fields_ = [
        ("radius", ctypes.c_int32),
        ("decay_exponent", ctypes.c_int32),
        ("decay_base", ctypes.c_double),
        ("reserved", ctypes.c_uint8 * 16),
        ("mix", ctypes.c_double),
    ]


class MultiFrequencyBand(ctypes.Structure):
    _fields_ = [
        ("gain", ctypes.c_float),
        ("noise", ctypes.c_float),
        ("damping", ctypes.c_float),
        ("limit", ctypes.c_float),
    ]


class MultiFrequencyParams(ctypes.Structure):
    _fields_ = [
        ("band_count", ctypes.c_uint32),
        ("base_gain", ctypes.c_float),
        ("pivot", ctypes.c_float),
        ("reserved", ctypes.c_uint32),
        ("band", MultiFrequencyBand * 8),
    ]


class HyperToneParams(ctypes.Structure):
    _fields_ = [
        ("amount", ctypes.c_float),
        ("shadows", ctypes.c_float),
        ("highlights", ctypes.c_float),
        ("local_contrast", ctypes.c_float),
        ("edge", ctypes.c_float),
        ("colour", ctypes.c_float),
        ("scale", ctypes.c_int32),
        ("reserved", ctypes.c_uint32),
    ]


class Functions:
    """All functions of a loaded library."""

    def __init__(self, library: ctypes.CDLL) -> None:
        self.band_resize = library.OvraBandResize
        self.band_resize.restype = ctypes.c_int32
        self.band_resize.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_rows
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_rows
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # first_row
            ctypes.c_void_p,  # rows_taken
            ctypes.c_void_p,  # rows_written
            ctypes.c_void_p,  # context
        ]
        self.band_resize_core_init = library.OvraBandResizeCore_Init
        self.band_resize_core_init.restype = ctypes.c_int32
        self.band_resize_core_init.argtypes = [
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # x
            ctypes.c_int32,  # y
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_void_p,  # kernel_table
            ctypes.c_float,  # stretch
            ctypes.c_int32,  # taps
            ctypes.c_void_p,  # context
        ]
        self.band_resize_free = library.OvraBandResize_Free
        self.band_resize_free.restype = ctypes.c_int32
        self.band_resize_free.argtypes = [
            ctypes.c_void_p,  # context
        ]
        self.band_resize_init = library.OvraBandResize_Init
        self.band_resize_init.restype = ctypes.c_int32
        self.band_resize_init.argtypes = [
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # x
            ctypes.c_int32,  # y
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_void_p,  # context
        ]
        self.calc_bspline = library.OvraCalcBSpline
        self.calc_bspline.restype = ctypes.c_int32
        self.calc_bspline.argtypes = [
            ctypes.c_float,  # b
            ctypes.c_void_p,  # table
        ]
        self.calc_cubic_spline = library.OvraCalcCubicSpline
        self.calc_cubic_spline.restype = ctypes.c_int32
        self.calc_cubic_spline.argtypes = [
            ctypes.c_float,  # a
            ctypes.c_void_p,  # table
        ]
        self.cascade_3d = library.OvraCascade3D
        self.cascade_3d.restype = ctypes.c_int32
        self.cascade_3d.argtypes = [
            ctypes.c_void_p,  # first
            ctypes.c_void_p,  # second
        ]
        self.composite_image = library.OvraCompositeImage
        self.composite_image.restype = ctypes.c_int32
        self.composite_image.argtypes = [
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # destination_format
            ctypes.c_void_p,  # source
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_uint32,  # source_format
            ctypes.c_int32,  # x
            ctypes.c_int32,  # y
            ctypes.c_uint8,  # blend_mode
        ]
        self.composite_image_with_mask_blending = library.OvraCompositeImageWithMaskBlending
        self.composite_image_with_mask_blending.restype = ctypes.c_int32
        self.composite_image_with_mask_blending.argtypes = [
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # mask
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # x
            ctypes.c_int32,  # y
            ctypes.c_uint8,  # blend_mode
        ]
        self.conv_color_1d_tbl = library.OvraConvColor1DTbl
        self.conv_color_1d_tbl.restype = ctypes.c_int32
        self.conv_color_1d_tbl.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_uint32,  # in_format
            ctypes.c_uint32,  # out_format
            ctypes.c_size_t,  # handle
        ]
        self.conv_color_1d_tbl_single_step = library.OvraConvColor1DTblSingleStep
        self.conv_color_1d_tbl_single_step.restype = ctypes.c_int32
        self.conv_color_1d_tbl_single_step.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_uint32,  # in_format
            ctypes.c_uint32,  # out_format
            ctypes.c_void_p,  # tables
        ]
        self.conv_color_1d_tbl_free = library.OvraConvColor1DTbl_Free
        self.conv_color_1d_tbl_free.restype = ctypes.c_int32
        self.conv_color_1d_tbl_free.argtypes = [
            ctypes.c_void_p,  # handle
        ]
        self.conv_color_1d_tbl_init = library.OvraConvColor1DTbl_Init
        self.conv_color_1d_tbl_init.restype = ctypes.c_int32
        self.conv_color_1d_tbl_init.argtypes = [
            ctypes.c_uint32,  # in_format
            ctypes.c_uint32,  # out_format
            ctypes.c_void_p,  # tables
            ctypes.c_void_p,  # handle_out
        ]
        self.conv_color_coef = library.OvraConvColorCoef
        self.conv_color_coef.restype = ctypes.c_int32
        self.conv_color_coef.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_uint32,  # in_format
            ctypes.c_uint32,  # out_format
            ctypes.c_size_t,  # handle
        ]
        self.conv_color_coef_single_step = library.OvraConvColorCoefSingleStep
        self.conv_color_coef_single_step.restype = ctypes.c_int32
        self.conv_color_coef_single_step.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_uint32,  # in_format
            ctypes.c_uint32,  # out_format
            ctypes.c_void_p,  # coefficients
        ]
        self.conv_color_coef_free = library.OvraConvColorCoef_Free
        self.conv_color_coef_free.restype = ctypes.c_int32
        self.conv_color_coef_free.argtypes = [
            ctypes.c_void_p,  # handle
        ]
        self.conv_color_coef_init = library.OvraConvColorCoef_Init
        self.conv_color_coef_init.restype = ctypes.c_int32
        self.conv_color_coef_init.argtypes = [
            ctypes.c_uint32,  # in_format
            ctypes.c_uint32,  # out_format
            ctypes.c_void_p,  # coefficients
            ctypes.c_void_p,  # handle_out
        ]
        self.conv_color_cube = library.OvraConvColorCube
        self.conv_color_cube.restype = ctypes.c_int32
        self.conv_color_cube.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_uint32,  # in_format
            ctypes.c_uint32,  # out_format
            ctypes.c_size_t,  # handle
        ]
        self.conv_color_cube_single_step = library.OvraConvColorCubeSingleStep
        self.conv_color_cube_single_step.restype = ctypes.c_int32
        self.conv_color_cube_single_step.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_uint32,  # in_format
            ctypes.c_uint32,  # out_format
            ctypes.c_void_p,  # cube
        ]
        self.conv_color_cube_free = library.OvraConvColorCube_Free
        self.conv_color_cube_free.restype = ctypes.c_int32
        self.conv_color_cube_free.argtypes = [
            ctypes.c_void_p,  # handle
        ]
        self.conv_color_cube_init = library.OvraConvColorCube_Init
        self.conv_color_cube_init.restype = ctypes.c_int32
        self.conv_color_cube_init.argtypes = [
            ctypes.c_uint32,  # in_format
            ctypes.c_uint32,  # out_format
            ctypes.c_void_p,  # cube
            ctypes.c_void_p,  # handle_out
        ]
        self.conv_color_mtx = library.OvraConvColorMtx
        self.conv_color_mtx.restype = ctypes.c_int32
        self.conv_color_mtx.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_uint32,  # in_format
            ctypes.c_uint32,  # out_format
            ctypes.c_size_t,  # handle
        ]
        self.conv_color_mtx_single_step = library.OvraConvColorMtxSingleStep
        self.conv_color_mtx_single_step.restype = ctypes.c_int32
        self.conv_color_mtx_single_step.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_uint32,  # in_format
            ctypes.c_uint32,  # out_format
            ctypes.c_void_p,  # matrix
        ]
        self.conv_color_mtx_free = library.OvraConvColorMtx_Free
        self.conv_color_mtx_free.restype = ctypes.c_int32
        self.conv_color_mtx_free.argtypes = [
            ctypes.c_void_p,  # handle
        ]
        self.conv_color_mtx_init = library.OvraConvColorMtx_Init
        self.conv_color_mtx_init.restype = ctypes.c_int32
        self.conv_color_mtx_init.argtypes = [
            ctypes.c_uint32,  # in_format
            ctypes.c_uint32,  # out_format
            ctypes.c_void_p,  # matrix
            ctypes.c_void_p,  # handle_out
        ]
        self.default_curves = library.OvraDefaultCurves
        self.default_curves.restype = ctypes.c_int32
        self.default_curves.argtypes = [
            ctypes.c_void_p,  # level_points
            ctypes.c_void_p,  # difference_points
        ]
        self.dib2raw = library.OvraDib2Raw
        self.dib2raw.restype = None
        self.dib2raw.argtypes = [
            ctypes.c_void_p,  # dib
            ctypes.c_void_p,  # raw
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # height
        ]
        self.efilter_image = library.OvraEFilterImage
        self.efilter_image.restype = ctypes.c_int32
        self.efilter_image.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # height
            ctypes.c_uint32,  # format
        ]
        self.extrapolate_image = library.OvraExtrapolateImage
        self.extrapolate_image.restype = ctypes.c_int32
        self.extrapolate_image.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_uint32,  # source_width
            ctypes.c_uint32,  # source_height
            ctypes.c_void_p,  # destination
            ctypes.c_uint32,  # destination_width
            ctypes.c_uint32,  # destination_height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # offset_x
            ctypes.c_int32,  # offset_y
            ctypes.c_void_p,  # fill
        ]
        self.free_trimming = library.OvraFreeTrimming
        self.free_trimming.restype = ctypes.c_int32
        self.free_trimming.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # x
            ctypes.c_int32,  # y
            ctypes.c_int32,  # angle
            ctypes.c_void_p,  # fill
        ]
        self.gaussian_weights = library.OvraGaussianWeights
        self.gaussian_weights.restype = ctypes.c_int32
        self.gaussian_weights.argtypes = [
            ctypes.c_double,  # radius
            ctypes.c_int32,  # max_taps
            ctypes.c_void_p,  # tap_count
            ctypes.c_void_p,  # weights
        ]
        self.get_version = library.OvraGetVersion
        self.get_version.restype = ctypes.c_uint32
        self.get_version.argtypes = []
        self.hybrid_hyper_tone = library.OvraHybridHyperTone
        self.hybrid_hyper_tone.restype = ctypes.c_int32
        self.hybrid_hyper_tone.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # height
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # context
        ]
        self.hybrid_hyper_tone_light = library.OvraHybridHyperToneLight
        self.hybrid_hyper_tone_light.restype = ctypes.c_int32
        self.hybrid_hyper_tone_light.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # height
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # context
        ]
        self.hybrid_hyper_tone_light_free = library.OvraHybridHyperToneLight_Free
        self.hybrid_hyper_tone_light_free.restype = ctypes.c_int32
        self.hybrid_hyper_tone_light_free.argtypes = [
            ctypes.c_void_p,  # context
        ]
        self.hybrid_hyper_tone_light_init = library.OvraHybridHyperToneLight_Init
        self.hybrid_hyper_tone_light_init.restype = ctypes.c_int32
        self.hybrid_hyper_tone_light_init.argtypes = [
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # params
            ctypes.c_void_p,  # curve
            ctypes.c_void_p,  # context
        ]
        self.hybrid_hyper_tone_light_init_12 = library.OvraHybridHyperToneLight_Init_12
        self.hybrid_hyper_tone_light_init_12.restype = ctypes.c_int32
        self.hybrid_hyper_tone_light_init_12.argtypes = [
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # params
            ctypes.c_void_p,  # curve
            ctypes.c_void_p,  # context
        ]
        self.hybrid_hyper_tone_free = library.OvraHybridHyperTone_Free
        self.hybrid_hyper_tone_free.restype = ctypes.c_int32
        self.hybrid_hyper_tone_free.argtypes = [
            ctypes.c_void_p,  # context
        ]
        self.hybrid_hyper_tone_init = library.OvraHybridHyperTone_Init
        self.hybrid_hyper_tone_init.restype = ctypes.c_int32
        self.hybrid_hyper_tone_init.argtypes = [
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # params
            ctypes.c_void_p,  # curve
            ctypes.c_void_p,  # context
        ]
        self.hybrid_hyper_tone_init_12 = library.OvraHybridHyperTone_Init_12
        self.hybrid_hyper_tone_init_12.restype = ctypes.c_int32
        self.hybrid_hyper_tone_init_12.argtypes = [
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # params
            ctypes.c_void_p,  # curve
            ctypes.c_void_p,  # context
        ]
        self.hyper_tone = library.OvraHyperTone
        self.hyper_tone.restype = ctypes.c_int32
        self.hyper_tone.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # height
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # context
        ]
        self.hyper_tone_light = library.OvraHyperToneLight
        self.hyper_tone_light.restype = ctypes.c_int32
        self.hyper_tone_light.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # height
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # context
        ]
        self.hyper_tone_light_free = library.OvraHyperToneLight_Free
        self.hyper_tone_light_free.restype = ctypes.c_int32
        self.hyper_tone_light_free.argtypes = [
            ctypes.c_void_p,  # context
        ]
        self.hyper_tone_light_init = library.OvraHyperToneLight_Init
        self.hyper_tone_light_init.restype = ctypes.c_int32
        self.hyper_tone_light_init.argtypes = [
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # params
            ctypes.c_void_p,  # curve
            ctypes.c_void_p,  # context
        ]
        self.hyper_tone_light_init_12 = library.OvraHyperToneLight_Init_12
        self.hyper_tone_light_init_12.restype = ctypes.c_int32
        self.hyper_tone_light_init_12.argtypes = [
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # params
            ctypes.c_void_p,  # curve
            ctypes.c_void_p,  # context
        ]
        self.hyper_tone_free = library.OvraHyperTone_Free
        self.hyper_tone_free.restype = ctypes.c_int32
        self.hyper_tone_free.argtypes = [
            ctypes.c_void_p,  # context
        ]
        self.hyper_tone_init = library.OvraHyperTone_Init
        self.hyper_tone_init.restype = ctypes.c_int32
        self.hyper_tone_init.argtypes = [
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # params
            ctypes.c_void_p,  # curve
            ctypes.c_void_p,  # context
        ]
        self.hyper_tone_init_12 = library.OvraHyperTone_Init_12
        self.hyper_tone_init_12.restype = ctypes.c_int32
        self.hyper_tone_init_12.argtypes = [
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # params
            ctypes.c_void_p,  # curve
            ctypes.c_void_p,  # context
        ]
        self.make_pixel_format_code = library.OvraMakePixelFormatCode
        self.make_pixel_format_code.restype = ctypes.c_int32
        self.make_pixel_format_code.argtypes = [
            ctypes.c_uint32,  # depth_bits
            ctypes.c_uint32,  # channels
            ctypes.c_uint32,  # color_model
            ctypes.c_uint32,  # row_alignment
            ctypes.c_uint32,  # row_order
            ctypes.c_void_p,  # format
        ]
        self.multi_frequency = library.OvraMultiFrequency
        self.multi_frequency.restype = ctypes.c_int32
        self.multi_frequency.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # height
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # params
        ]
        self.raw2dib = library.OvraRaw2Dib
        self.raw2dib.restype = None
        self.raw2dib.argtypes = [
            ctypes.c_void_p,  # raw
            ctypes.c_void_p,  # dib
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # height
        ]
        self.resize_image = library.OvraResizeImage
        self.resize_image.restype = ctypes.c_int32
        self.resize_image.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # format
        ]
        self.resize_image_core = library.OvraResizeImageCore
        self.resize_image_core.restype = ctypes.c_int32
        self.resize_image_core.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # x
            ctypes.c_int32,  # y
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_void_p,  # kernel_table
            ctypes.c_float,  # stretch
            ctypes.c_int32,  # taps
        ]
        self.resize_image_core_var = library.OvraResizeImageCoreVAR
        self.resize_image_core_var.restype = ctypes.c_int32
        self.resize_image_core_var.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # x
            ctypes.c_int32,  # y
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_double,  # horizontal_factor
            ctypes.c_double,  # vertical_factor
            ctypes.c_void_p,  # kernel_table
            ctypes.c_float,  # horizontal_stretch
            ctypes.c_float,  # vertical_stretch
            ctypes.c_int32,  # horizontal_taps
            ctypes.c_int32,  # vertical_taps
        ]
        self.resize_image_roi = library.OvraResizeImageROI
        self.resize_image_roi.restype = ctypes.c_int32
        self.resize_image_roi.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # x
            ctypes.c_int32,  # y
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
        ]
        self.resize_image_roi_var = library.OvraResizeImageROIVAR
        self.resize_image_roi_var.restype = ctypes.c_int32
        self.resize_image_roi_var.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # x
            ctypes.c_int32,  # y
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_double,  # horizontal_factor
            ctypes.c_double,  # vertical_factor
        ]
        self.resize_image_var = library.OvraResizeImageVAR
        self.resize_image_var.restype = ctypes.c_int32
        self.resize_image_var.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # format
            ctypes.c_double,  # horizontal_factor
            ctypes.c_double,  # vertical_factor
        ]
        self.resize_rotate_image_core = library.OvraResizeRotateImageCore
        self.resize_rotate_image_core.restype = ctypes.c_int32
        self.resize_rotate_image_core.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # x
            ctypes.c_int32,  # y
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_void_p,  # kernel_table
            ctypes.c_float,  # stretch
            ctypes.c_int32,  # taps
            ctypes.c_int32,  # mode
        ]
        self.resize_rotate_image_roi = library.OvraResizeRotateImageROI
        self.resize_rotate_image_roi.restype = ctypes.c_int32
        self.resize_rotate_image_roi.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # x
            ctypes.c_int32,  # y
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_int32,  # mode
        ]
        self.rotate_image = library.OvraRotateImage
        self.rotate_image.restype = ctypes.c_int32
        self.rotate_image.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # mode
        ]
        self.row_stride = library.OvraRowStride
        self.row_stride.restype = ctypes.c_int32
        self.row_stride.argtypes = [
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # stride
        ]
        self.select_kernel_support = library.OvraSelectKernelSupport
        self.select_kernel_support.restype = ctypes.c_int32
        self.select_kernel_support.argtypes = [
            ctypes.c_float,  # ratio
            ctypes.c_void_p,  # taps
            ctypes.c_void_p,  # stretch
        ]
        self.small_resize_image = library.OvraSmallResizeImage
        self.small_resize_image.restype = ctypes.c_int32
        self.small_resize_image.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # x
            ctypes.c_int32,  # y
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_void_p,  # kernel_table
        ]
        self.small_resize_rotate_image = library.OvraSmallResizeRotateImage
        self.small_resize_rotate_image.restype = ctypes.c_int32
        self.small_resize_rotate_image.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_int32,  # source_width
            ctypes.c_int32,  # source_height
            ctypes.c_void_p,  # destination
            ctypes.c_int32,  # destination_width
            ctypes.c_int32,  # destination_height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # x
            ctypes.c_int32,  # y
            ctypes.c_int32,  # width
            ctypes.c_int32,  # height
            ctypes.c_void_p,  # kernel_table
            ctypes.c_int32,  # mode
        ]
        self.soft_focus = library.OvraSoftFocus
        self.soft_focus.restype = ctypes.c_int32
        self.soft_focus.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # height
            ctypes.c_void_p,  # params
        ]
        self.status_text = library.OvraStatusText
        self.status_text.restype = ctypes.c_char_p
        self.status_text.argtypes = [
            ctypes.c_int32,  # status
        ]
        self.yusm = library.OvraYUsm
        self.yusm.restype = ctypes.c_int32
        self.yusm.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # height
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # context
        ]
        self.yusm_double = library.OvraYUsmDouble
        self.yusm_double.restype = ctypes.c_int32
        self.yusm_double.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # height
            ctypes.c_uint32,  # format
            ctypes.c_void_p,  # context
        ]
        self.yusm_double_single_step = library.OvraYUsmDoubleSingleStep
        self.yusm_double_single_step.restype = ctypes.c_int32
        self.yusm_double_single_step.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # height
            ctypes.c_uint32,  # format
            ctypes.c_uint32,  # tap_count1
            ctypes.c_void_p,  # weights1
            ctypes.c_uint32,  # tap_count2
            ctypes.c_void_p,  # weights2
            ctypes.c_float,  # amount1
            ctypes.c_void_p,  # level_table1
            ctypes.c_void_p,  # difference_table1
            ctypes.c_float,  # amount2
            ctypes.c_void_p,  # level_table2
            ctypes.c_void_p,  # difference_table2
        ]
        self.yusm_double_free = library.OvraYUsmDouble_Free
        self.yusm_double_free.restype = ctypes.c_int32
        self.yusm_double_free.argtypes = [
            ctypes.c_void_p,  # context
        ]
        self.yusm_double_init = library.OvraYUsmDouble_Init
        self.yusm_double_init.restype = ctypes.c_int32
        self.yusm_double_init.argtypes = [
            ctypes.c_uint32,  # format
            ctypes.c_uint32,  # tap_count1
            ctypes.c_void_p,  # weights1
            ctypes.c_uint32,  # tap_count2
            ctypes.c_void_p,  # weights2
            ctypes.c_float,  # amount1
            ctypes.c_void_p,  # level_table1
            ctypes.c_void_p,  # difference_table1
            ctypes.c_float,  # amount2
            ctypes.c_void_p,  # level_table2
            ctypes.c_void_p,  # difference_table2
            ctypes.c_void_p,  # context
        ]
        self.yusm_make_table = library.OvraYUsmMakeTable
        self.yusm_make_table.restype = ctypes.c_int32
        self.yusm_make_table.argtypes = [
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # level_point_count
            ctypes.c_void_p,  # level_points
            ctypes.c_int32,  # difference_point_count
            ctypes.c_void_p,  # difference_points
            ctypes.c_void_p,  # level_table
            ctypes.c_void_p,  # difference_table
        ]
        self.yusm_single_step = library.OvraYUsmSingleStep
        self.yusm_single_step.restype = ctypes.c_int32
        self.yusm_single_step.argtypes = [
            ctypes.c_void_p,  # source
            ctypes.c_void_p,  # destination
            ctypes.c_uint32,  # width
            ctypes.c_uint32,  # height
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # tap_count
            ctypes.c_void_p,  # weights
            ctypes.c_float,  # amount
            ctypes.c_void_p,  # level_table
            ctypes.c_void_p,  # difference_table
        ]
        self.yusm_free = library.OvraYUsm_Free
        self.yusm_free.restype = ctypes.c_int32
        self.yusm_free.argtypes = [
            ctypes.c_void_p,  # context
        ]
        self.yusm_init = library.OvraYUsm_Init
        self.yusm_init.restype = ctypes.c_int32
        self.yusm_init.argtypes = [
            ctypes.c_uint32,  # format
            ctypes.c_int32,  # tap_count
            ctypes.c_void_p,  # weights
            ctypes.c_float,  # amount
            ctypes.c_void_p,  # level_table
            ctypes.c_void_p,  # difference_table
            ctypes.c_void_p,  # context
        ]
