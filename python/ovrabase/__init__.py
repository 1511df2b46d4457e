# SPDX-License-Identifier: MIT
"""OvraBase for Python: still-image processing on NumPy arrays.

Functions bear the names of the library's in snake case without "Ovra". Images are arrays, described in
ovrabase.arrays with what is copied and what is not. Results are new arrays, or the `destination` that
is given. A refused call raises Error. ovrabase.native.Functions has every function as it is in C.

While a function runs, other threads do: the interpreter's lock is released.
"""

from .arrays import Kind, Layout, empty, make_pixel_format_code, row_stride
from .band_resize import BandResize, band_resize_core_init, band_resize_init
from .basic import composite_image, composite_image_with_mask_blending, dib2raw, raw2dib
from .color import (RGB8, ColorCube, cascade_3d, conv_color_1d_tbl, conv_color_1d_tbl_free,
                    conv_color_1d_tbl_init, conv_color_1d_tbl_single_step, conv_color_coef,
                    conv_color_coef_free, conv_color_coef_init, conv_color_coef_single_step,
                    conv_color_cube, conv_color_cube_free, conv_color_cube_init,
                    conv_color_cube_single_step, conv_color_mtx, conv_color_mtx_free,
                    conv_color_mtx_init, conv_color_mtx_single_step)
from .filters import (Band, ResponseTables, default_curves, efilter_image, gaussian_weights,
                      multi_frequency, soft_focus, yusm, yusm_double, yusm_double_free,
                      yusm_double_init, yusm_double_single_step, yusm_free, yusm_init,
                      yusm_make_table, yusm_single_step)
from .geometry import extrapolate_image, free_trimming, rotate_image
from .library import Context, Error, functions, get_version, status_text
from .native import (BlendMode, ColorModel, HyperToneParams, MultiFrequencyBand,
                     MultiFrequencyParams, Rotation, RowOrder, StatusCode)
from .resample import (calc_bspline, calc_cubic_spline, resize_image, resize_image_core,
                       resize_image_core_var, resize_image_roi, resize_image_roi_var,
                       resize_image_var, resize_rotate_image_core, resize_rotate_image_roi,
                       select_kernel_support, small_resize_image, small_resize_rotate_image)
from .tone import (hybrid_hyper_tone, hybrid_hyper_tone_init, hybrid_hyper_tone_light,
                   hybrid_hyper_tone_light_init, hyper_tone, hyper_tone_init, hyper_tone_light,
                   hyper_tone_light_init)

__all__ = [name for name in dir() if not name.startswith("_")]
