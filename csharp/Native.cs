// SPDX-License-Identifier: MIT
// Written by scripts/generate-bindings from the headers; not to be edited.
using System;
using System.Runtime.InteropServices;

namespace OvraBase
{
    public enum OvraStatusCode
    {
        OVRA_OK = 0,
        OVRA_ERROR_NO_MEMORY = 40,
        OVRA_ERROR_NULL_DECODER_OUTPUT = 41,
        OVRA_ERROR_RESIZE_NULL_IMAGE = 101,
        OVRA_ERROR_RESIZE_ZERO_SIZE = 102,
        OVRA_ERROR_RESIZE_NULL_TABLE = 103,
        OVRA_ERROR_RESIZE_STRETCH = 104,
        OVRA_ERROR_RESIZE_TAP_COUNT = 105,
        OVRA_ERROR_RESIZE_CHANNELS = 106,
        OVRA_ERROR_RESIZE_DEPTH = 107,
        OVRA_ERROR_RESIZE_COLOR_MODEL = 108,
        OVRA_ERROR_RESIZE_ARRANGEMENT = 109,
        OVRA_ERROR_BAND_RESIZE_CHANGED = 110,
        OVRA_ERROR_RESIZE_SOURCE_SMALL = 111,
        OVRA_ERROR_RESIZE_DESTINATION_SMALL = 112,
        OVRA_ERROR_RESIZE_REGION_SIZE = 113,
        OVRA_ERROR_RESIZE_REGION_OUTSIDE = 114,
        OVRA_ERROR_BAND_RESIZE_POSITION = 115,
        OVRA_ERROR_YUSM_NULL = 116,
        OVRA_ERROR_YUSM_SIZE = 117,
        OVRA_ERROR_YUSM_CHANNELS = 118,
        OVRA_ERROR_YUSM_DEPTH = 119,
        OVRA_ERROR_YUSM_COLOR_MODEL = 120,
        OVRA_ERROR_YUSM_ARRANGEMENT = 121,
        OVRA_ERROR_YUSM_TAPS = 122,
        OVRA_ERROR_YUSM_NULL_TABLE = 123,
        OVRA_ERROR_YUSM_POINT_COUNT = 124,
        OVRA_ERROR_YUSM_LEVEL_CURVE = 125,
        OVRA_ERROR_YUSM_DIFFERENCE_CURVE = 126,
        OVRA_ERROR_MULTI_FREQUENCY_PARAMETER = 127,
        OVRA_ERROR_FORMAT_DEPTH = 129,
        OVRA_ERROR_FORMAT_CHANNELS = 130,
        OVRA_ERROR_FORMAT_COLOR_MODEL = 131,
        OVRA_ERROR_FORMAT_ARRANGEMENT = 132,
        OVRA_ERROR_FORMAT_ROW_ALIGNMENT = 133,
        OVRA_ERROR_FORMAT_ROW_ORDER = 134,
        OVRA_ERROR_CUBE_NULL = 140,
        OVRA_ERROR_CUBE_ZERO_SIZE = 141,
        OVRA_ERROR_CUBE_GRID_COUNT = 142,
        OVRA_ERROR_CUBE_NULL_GRID = 143,
        OVRA_ERROR_CUBE_CHANNELS = 145,
        OVRA_ERROR_CUBE_INPUT_DEPTH = 146,
        OVRA_ERROR_CUBE_DEPTH = 147,
        OVRA_ERROR_CUBE_COLOR_MODEL = 148,
        OVRA_ERROR_CUBE_ARRANGEMENT = 149,
        OVRA_ERROR_CUBE_FORMAT_CHANGED = 150,
        OVRA_ERROR_TABLE_NULL = 152,
        OVRA_ERROR_TABLE_ZERO_SIZE = 153,
        OVRA_ERROR_TABLE_NULL_TABLE = 154,
        OVRA_ERROR_TABLE_CHANNELS = 155,
        OVRA_ERROR_TABLE_DEPTH = 156,
        OVRA_ERROR_TABLE_COLOR_MODEL = 157,
        OVRA_ERROR_TABLE_ARRANGEMENT = 158,
        OVRA_ERROR_TABLE_FORMAT_CHANGED = 159,
        OVRA_ERROR_COEFFICIENT_NULL = 161,
        OVRA_ERROR_COEFFICIENT_ZERO_SIZE = 162,
        OVRA_ERROR_FORMAT_CHANGED = 163,
        OVRA_ERROR_MATRIX_NULL = 164,
        OVRA_ERROR_MATRIX_ZERO_SIZE = 165,
        OVRA_ERROR_MATRIX_CHANNELS = 166,
        OVRA_ERROR_MATRIX_DEPTH = 167,
        OVRA_ERROR_MATRIX_COLOR_MODEL = 168,
        OVRA_ERROR_MATRIX_ARRANGEMENT = 169,
        OVRA_ERROR_ROTATION_NULL = 172,
        OVRA_ERROR_ROTATION_ZERO_SIZE = 173,
        OVRA_ERROR_ROTATION_MODE = 174,
        OVRA_ERROR_ROTATION_CHANNELS = 175,
        OVRA_ERROR_ROTATION_DEPTH = 176,
        OVRA_ERROR_ROTATION_COLOR_MODEL = 177,
        OVRA_ERROR_ROTATION_ARRANGEMENT = 178,
        OVRA_ERROR_TRIMMING_SIZE = 179,
        OVRA_ERROR_TRIMMING_IN_PLACE = 180,
        OVRA_ERROR_CASCADE_NULL = 184,
        OVRA_ERROR_CASCADE_GRID_COUNT = 185,
        OVRA_ERROR_CASCADE_NULL_GRID = 186,
        OVRA_ERROR_CASCADE_CONVERSION = 187,
        OVRA_ERROR_EXTRAPOLATION_NULL = 192,
        OVRA_ERROR_EXTRAPOLATION_IN_PLACE = 193,
        OVRA_ERROR_EXTRAPOLATION_SIZE = 194,
        OVRA_ERROR_EXTRAPOLATION_CHANNELS = 195,
        OVRA_ERROR_EXTRAPOLATION_DEPTH = 196,
        OVRA_ERROR_EXTRAPOLATION_NULL_FILL = 197,
        OVRA_ERROR_EXTRAPOLATION_COLOR_MODEL = 198,
        OVRA_ERROR_EXTRAPOLATION_ARRANGEMENT = 199,
        OVRA_ERROR_YUSM_DOUBLE_FORMAT = 201,
        OVRA_ERROR_YUSM_DOUBLE_ARGUMENT = 202,
        OVRA_ERROR_YUSM_DOUBLE_TAPS = 203,
        OVRA_ERROR_COMPOSITE_NULL = 220,
        OVRA_ERROR_COMPOSITE_IN_PLACE = 221,
        OVRA_ERROR_COMPOSITE_SIZE = 222,
        OVRA_ERROR_COMPOSITE_CHANNELS = 223,
        OVRA_ERROR_COMPOSITE_DEPTH = 224,
        OVRA_ERROR_COMPOSITE_COLOR_MODEL = 225,
        OVRA_ERROR_COMPOSITE_ARRANGEMENT = 226,
        OVRA_ERROR_COMPOSITE_FORMATS_DIFFER = 227,
        OVRA_ERROR_COMPOSITE_CHANNEL_RELATION = 228,
        OVRA_ERROR_EDGE_FILTER_NULL = 230,
        OVRA_ERROR_EDGE_FILTER_IN_PLACE = 231,
        OVRA_ERROR_EDGE_FILTER_ZERO_SIZE = 232,
        OVRA_ERROR_EDGE_FILTER_CHANNELS = 233,
        OVRA_ERROR_EDGE_FILTER_DEPTH = 234,
        OVRA_ERROR_EDGE_FILTER_COLOR_MODEL = 235,
        OVRA_ERROR_EDGE_FILTER_ARRANGEMENT = 236,
        OVRA_ERROR_TONE_NULL = 250,
        OVRA_ERROR_TONE_PARAMETER = 251,
        OVRA_ERROR_TONE_ZERO_SIZE = 252,
        OVRA_ERROR_TONE_CHANNELS = 253,
        OVRA_ERROR_TONE_DEPTH = 254,
        OVRA_ERROR_TONE_COLOR_MODEL = 255,
        OVRA_ERROR_TONE_ARRANGEMENT = 256,
        OVRA_ERROR_TONE_CONTEXT = 257,
        OVRA_ERROR_SOFT_FOCUS_NULL = 267,
        OVRA_ERROR_RESIZE_FACTOR = 299,
    }

    public enum OvraColorModel
    {
        OVRA_MODEL_GREY = 0,
        OVRA_MODEL_RGB = 256,
        OVRA_MODEL_BGR = 512,
        OVRA_MODEL_YCC = 768,
        OVRA_MODEL_TRIPLE_4 = 1024,
        OVRA_MODEL_TRIPLE_5 = 1280,
        OVRA_MODEL_TRIPLE_6 = 1536,
        OVRA_MODEL_TRIPLE_7 = 1792,
        OVRA_MODEL_RGBA = 4096,
        OVRA_MODEL_BGRA = 4352,
        OVRA_MODEL_CMYK = 4608,
    }

    public enum OvraRowOrder
    {
        OVRA_ROWS_TOP_DOWN = 0,
        OVRA_ROWS_BOTTOM_UP = 16777216,
    }

    public enum OvraBlendMode
    {
        OVRA_BLEND_WEIGHT_OF_DESTINATION = 0,
        OVRA_BLEND_WEIGHT_OF_SOURCE = 1,
    }

    public enum OvraRotation
    {
        OVRA_ROTATE_NONE = 0,
        OVRA_ROTATE_QUARTER_LEFT = 1,
        OVRA_ROTATE_HALF = 2,
        OVRA_ROTATE_QUARTER_RIGHT = 3,
        OVRA_ROTATE_MIRROR = 4,
        OVRA_ROTATE_ANTI_TRANSPOSE = 5,
        OVRA_ROTATE_FLIP = 6,
        OVRA_ROTATE_TRANSPOSE = 7,
    }

    [StructLayout(LayoutKind.Sequential, Pack = 8)]
    public struct OvraColorCube
    {
        public uint count0;
        public IntPtr grid0;
        public uint count1;
        public IntPtr grid1;
        public uint count2;
        public IntPtr grid2;
        public IntPtr lattice;
    }

    [StructLayout(LayoutKind.Sequential, Pack = 8)]
    public struct OvraChannelTableSet
    {
        public IntPtr table0;
        public IntPtr table1;
        public IntPtr table2;
    }

    [StructLayout(LayoutKind.Sequential, Pack = 8)]
    public struct OvraChannelPolynomial
    {
        public double c0;
        public double c1;
        public double c2;
        public double reserved;
    }

    [StructLayout(LayoutKind.Sequential, Pack = 4)]
    public struct OvraColorMatrix
    {
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 30)]
        public double[] rows;
        public uint reserved;
    }

    [StructLayout(LayoutKind.Sequential, Pack = 8)]
    public struct OvraResponsePoint
    {
        public double x;
        public double y;
    }

    [StructLayout(LayoutKind.Sequential, Pack = 8)]
    public struct OvraSoftFocusParams
    {
        public int radius;
        public int decayExponent;
        public double decayBase;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)]
        public byte[] reserved;
        public double mix;
    }

    [StructLayout(LayoutKind.Sequential, Pack = 4)]
    public struct OvraMultiFrequencyBand
    {
        public float gain;
        public float noise;
        public float damping;
        public float limit;
    }

    [StructLayout(LayoutKind.Sequential, Pack = 4)]
    public struct OvraMultiFrequencyParams
    {
        public uint bandCount;
        public float baseGain;
        public float pivot;
        public uint reserved;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 8)]
        public OvraMultiFrequencyBand[] band;
    }

    [StructLayout(LayoutKind.Sequential, Pack = 4)]
    public struct OvraHyperToneParams
    {
        public float amount;
        public float shadows;
        public float highlights;
        public float localContrast;
        public float edge;
        public float colour;
        public int scale;
        public uint reserved;
    }

    /// <summary>The functions of the library as they stand in its headers, which say what each
    /// does and answers. Images are arrays of bytes, or addresses for all other memory.</summary>
    public static class Native
    {
        private const string Library = "OvraBase";

        public const int OVRA_LEVEL_TABLE_SIZE = 1024;
        public const int OVRA_DIFFERENCE_TABLE_SIZE = 2048;
        public const int OVRA_YUSM_MAX_TAPS = 64;
        public const int OVRA_DEFAULT_LEVEL_POINTS = 4;
        public const int OVRA_DEFAULT_DIFFERENCE_POINTS = 10;
        public const int OVRA_YUSM_DOUBLE_MAX_TAPS = 25;
        public const int OVRA_MULTI_FREQUENCY_MAX_BANDS = 8;
        public const int OVRA_KERNEL_TABLE_STEPS = 4096;
        public const int OVRA_KERNEL_TABLE_ENTRIES = 16384;

        [DllImport(Library)]
        public static extern int OvraBandResize(byte[] source, int sourceWidth, int sourceRows, byte[] destination, int destinationWidth, int destinationRows, uint format, int firstRow, out int rowsTaken, out int rowsWritten, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraBandResize(IntPtr source, int sourceWidth, int sourceRows, IntPtr destination, int destinationWidth, int destinationRows, uint format, int firstRow, out int rowsTaken, out int rowsWritten, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraBandResizeCore_Init(int sourceWidth, int sourceHeight, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, float[] kernelTable, float stretch, int taps, ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraBandResize_Free(ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraBandResize_Init(int sourceWidth, int sourceHeight, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraCalcBSpline(float b, float[] table);

        [DllImport(Library)]
        public static extern int OvraCalcCubicSpline(float a, float[] table);

        [DllImport(Library)]
        public static extern int OvraCascade3D(ref OvraColorCube first, ref OvraColorCube second);

        [DllImport(Library)]
        public static extern int OvraCompositeImage(byte[] destination, int destinationWidth, int destinationHeight, uint destinationFormat, byte[] source, int sourceWidth, int sourceHeight, uint sourceFormat, int x, int y, byte blendMode);

        [DllImport(Library)]
        public static extern int OvraCompositeImage(IntPtr destination, int destinationWidth, int destinationHeight, uint destinationFormat, IntPtr source, int sourceWidth, int sourceHeight, uint sourceFormat, int x, int y, byte blendMode);

        [DllImport(Library)]
        public static extern int OvraCompositeImageWithMaskBlending(byte[] destination, int destinationWidth, int destinationHeight, byte[] source, byte[] mask, int sourceWidth, int sourceHeight, uint format, int x, int y, byte blendMode);

        [DllImport(Library)]
        public static extern int OvraCompositeImageWithMaskBlending(IntPtr destination, int destinationWidth, int destinationHeight, IntPtr source, IntPtr mask, int sourceWidth, int sourceHeight, uint format, int x, int y, byte blendMode);

        [DllImport(Library)]
        public static extern int OvraConvColor1DTbl(byte[] source, byte[] destination, int width, int height, uint inFormat, uint outFormat, UIntPtr handle);

        [DllImport(Library)]
        public static extern int OvraConvColor1DTbl(IntPtr source, IntPtr destination, int width, int height, uint inFormat, uint outFormat, UIntPtr handle);

        [DllImport(Library)]
        public static extern int OvraConvColor1DTblSingleStep(byte[] source, byte[] destination, int width, int height, uint inFormat, uint outFormat, ref OvraChannelTableSet tables);

        [DllImport(Library)]
        public static extern int OvraConvColor1DTblSingleStep(IntPtr source, IntPtr destination, int width, int height, uint inFormat, uint outFormat, ref OvraChannelTableSet tables);

        [DllImport(Library)]
        public static extern int OvraConvColor1DTbl_Free(ref UIntPtr handle);

        [DllImport(Library)]
        public static extern int OvraConvColor1DTbl_Init(uint inFormat, uint outFormat, ref OvraChannelTableSet tables, out UIntPtr handleOut);

        [DllImport(Library)]
        public static extern int OvraConvColorCoef(byte[] source, byte[] destination, int width, int height, uint inFormat, uint outFormat, UIntPtr handle);

        [DllImport(Library)]
        public static extern int OvraConvColorCoef(IntPtr source, IntPtr destination, int width, int height, uint inFormat, uint outFormat, UIntPtr handle);

        [DllImport(Library)]
        public static extern int OvraConvColorCoefSingleStep(byte[] source, byte[] destination, int width, int height, uint inFormat, uint outFormat, [In, Out] OvraChannelPolynomial[] coefficients);

        [DllImport(Library)]
        public static extern int OvraConvColorCoefSingleStep(IntPtr source, IntPtr destination, int width, int height, uint inFormat, uint outFormat, [In, Out] OvraChannelPolynomial[] coefficients);

        [DllImport(Library)]
        public static extern int OvraConvColorCoef_Free(ref UIntPtr handle);

        [DllImport(Library)]
        public static extern int OvraConvColorCoef_Init(uint inFormat, uint outFormat, [In, Out] OvraChannelPolynomial[] coefficients, out UIntPtr handleOut);

        [DllImport(Library)]
        public static extern int OvraConvColorCube(byte[] source, byte[] destination, int width, int height, uint inFormat, uint outFormat, UIntPtr handle);

        [DllImport(Library)]
        public static extern int OvraConvColorCube(IntPtr source, IntPtr destination, int width, int height, uint inFormat, uint outFormat, UIntPtr handle);

        [DllImport(Library)]
        public static extern int OvraConvColorCubeSingleStep(byte[] source, byte[] destination, int width, int height, uint inFormat, uint outFormat, ref OvraColorCube cube);

        [DllImport(Library)]
        public static extern int OvraConvColorCubeSingleStep(IntPtr source, IntPtr destination, int width, int height, uint inFormat, uint outFormat, ref OvraColorCube cube);

        [DllImport(Library)]
        public static extern int OvraConvColorCube_Free(ref UIntPtr handle);

        [DllImport(Library)]
        public static extern int OvraConvColorCube_Init(uint inFormat, uint outFormat, ref OvraColorCube cube, out UIntPtr handleOut);

        [DllImport(Library)]
        public static extern int OvraConvColorMtx(byte[] source, byte[] destination, int width, int height, uint inFormat, uint outFormat, UIntPtr handle);

        [DllImport(Library)]
        public static extern int OvraConvColorMtx(IntPtr source, IntPtr destination, int width, int height, uint inFormat, uint outFormat, UIntPtr handle);

        [DllImport(Library)]
        public static extern int OvraConvColorMtxSingleStep(byte[] source, byte[] destination, int width, int height, uint inFormat, uint outFormat, ref OvraColorMatrix matrix);

        [DllImport(Library)]
        public static extern int OvraConvColorMtxSingleStep(IntPtr source, IntPtr destination, int width, int height, uint inFormat, uint outFormat, ref OvraColorMatrix matrix);

        [DllImport(Library)]
        public static extern int OvraConvColorMtx_Free(ref UIntPtr handle);

        [DllImport(Library)]
        public static extern int OvraConvColorMtx_Init(uint inFormat, uint outFormat, ref OvraColorMatrix matrix, out UIntPtr handleOut);

        [DllImport(Library)]
        public static extern int OvraDefaultCurves([In, Out] OvraResponsePoint[] levelPoints, [In, Out] OvraResponsePoint[] differencePoints);

        [DllImport(Library)]
        public static extern void OvraDib2Raw(byte[] dib, byte[] raw, uint width, uint height);

        [DllImport(Library)]
        public static extern void OvraDib2Raw(IntPtr dib, IntPtr raw, uint width, uint height);

        [DllImport(Library)]
        public static extern int OvraEFilterImage(byte[] source, byte[] destination, uint width, uint height, uint format);

        [DllImport(Library)]
        public static extern int OvraEFilterImage(IntPtr source, IntPtr destination, uint width, uint height, uint format);

        [DllImport(Library)]
        public static extern int OvraExtrapolateImage(byte[] source, uint sourceWidth, uint sourceHeight, byte[] destination, uint destinationWidth, uint destinationHeight, uint format, int offsetX, int offsetY, ushort[] fill);

        [DllImport(Library)]
        public static extern int OvraExtrapolateImage(IntPtr source, uint sourceWidth, uint sourceHeight, IntPtr destination, uint destinationWidth, uint destinationHeight, uint format, int offsetX, int offsetY, ushort[] fill);

        [DllImport(Library)]
        public static extern int OvraFreeTrimming(byte[] source, int sourceWidth, int sourceHeight, byte[] destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int angle, ushort[] fill);

        [DllImport(Library)]
        public static extern int OvraFreeTrimming(IntPtr source, int sourceWidth, int sourceHeight, IntPtr destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int angle, ushort[] fill);

        [DllImport(Library)]
        public static extern int OvraGaussianWeights(double radius, int maxTaps, out int tapCount, int[] weights);

        [DllImport(Library)]
        public static extern uint OvraGetVersion();

        [DllImport(Library)]
        public static extern int OvraHybridHyperTone(byte[] source, byte[] destination, uint width, uint height, uint format, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHybridHyperTone(IntPtr source, IntPtr destination, uint width, uint height, uint format, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHybridHyperToneLight(byte[] source, byte[] destination, uint width, uint height, uint format, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHybridHyperToneLight(IntPtr source, IntPtr destination, uint width, uint height, uint format, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHybridHyperToneLight_Free(ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHybridHyperToneLight_Init(uint format, ref OvraHyperToneParams @params, ushort[] curve, ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHybridHyperToneLight_Init_12(uint format, ref OvraHyperToneParams @params, ushort[] curve, ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHybridHyperTone_Free(ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHybridHyperTone_Init(uint format, ref OvraHyperToneParams @params, ushort[] curve, ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHybridHyperTone_Init_12(uint format, ref OvraHyperToneParams @params, ushort[] curve, ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHyperTone(byte[] source, byte[] destination, uint width, uint height, uint format, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHyperTone(IntPtr source, IntPtr destination, uint width, uint height, uint format, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHyperToneLight(byte[] source, byte[] destination, uint width, uint height, uint format, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHyperToneLight(IntPtr source, IntPtr destination, uint width, uint height, uint format, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHyperToneLight_Free(ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHyperToneLight_Init(uint format, ref OvraHyperToneParams @params, ushort[] curve, ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHyperToneLight_Init_12(uint format, ref OvraHyperToneParams @params, ushort[] curve, ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHyperTone_Free(ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHyperTone_Init(uint format, ref OvraHyperToneParams @params, ushort[] curve, ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraHyperTone_Init_12(uint format, ref OvraHyperToneParams @params, ushort[] curve, ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraMakePixelFormatCode(uint depthBits, uint channels, uint colorModel, uint rowAlignment, uint rowOrder, out uint format);

        [DllImport(Library)]
        public static extern int OvraMultiFrequency(byte[] source, byte[] destination, uint width, uint height, uint format, ref OvraMultiFrequencyParams @params);

        [DllImport(Library)]
        public static extern int OvraMultiFrequency(IntPtr source, IntPtr destination, uint width, uint height, uint format, ref OvraMultiFrequencyParams @params);

        [DllImport(Library)]
        public static extern void OvraRaw2Dib(byte[] raw, byte[] dib, uint width, uint height);

        [DllImport(Library)]
        public static extern void OvraRaw2Dib(IntPtr raw, IntPtr dib, uint width, uint height);

        [DllImport(Library)]
        public static extern int OvraResizeImage(byte[] source, int sourceWidth, int sourceHeight, byte[] destination, int destinationWidth, int destinationHeight, uint format);

        [DllImport(Library)]
        public static extern int OvraResizeImage(IntPtr source, int sourceWidth, int sourceHeight, IntPtr destination, int destinationWidth, int destinationHeight, uint format);

        [DllImport(Library)]
        public static extern int OvraResizeImageCore(byte[] source, int sourceWidth, int sourceHeight, byte[] destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, float[] kernelTable, float stretch, int taps);

        [DllImport(Library)]
        public static extern int OvraResizeImageCore(IntPtr source, int sourceWidth, int sourceHeight, IntPtr destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, float[] kernelTable, float stretch, int taps);

        [DllImport(Library)]
        public static extern int OvraResizeImageCoreVAR(byte[] source, int sourceWidth, int sourceHeight, byte[] destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, double horizontalFactor, double verticalFactor, float[] kernelTable, float horizontalStretch, float verticalStretch, int horizontalTaps, int verticalTaps);

        [DllImport(Library)]
        public static extern int OvraResizeImageCoreVAR(IntPtr source, int sourceWidth, int sourceHeight, IntPtr destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, double horizontalFactor, double verticalFactor, float[] kernelTable, float horizontalStretch, float verticalStretch, int horizontalTaps, int verticalTaps);

        [DllImport(Library)]
        public static extern int OvraResizeImageROI(byte[] source, int sourceWidth, int sourceHeight, byte[] destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height);

        [DllImport(Library)]
        public static extern int OvraResizeImageROI(IntPtr source, int sourceWidth, int sourceHeight, IntPtr destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height);

        [DllImport(Library)]
        public static extern int OvraResizeImageROIVAR(byte[] source, int sourceWidth, int sourceHeight, byte[] destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, double horizontalFactor, double verticalFactor);

        [DllImport(Library)]
        public static extern int OvraResizeImageROIVAR(IntPtr source, int sourceWidth, int sourceHeight, IntPtr destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, double horizontalFactor, double verticalFactor);

        [DllImport(Library)]
        public static extern int OvraResizeImageVAR(byte[] source, int sourceWidth, int sourceHeight, byte[] destination, int destinationWidth, int destinationHeight, uint format, double horizontalFactor, double verticalFactor);

        [DllImport(Library)]
        public static extern int OvraResizeImageVAR(IntPtr source, int sourceWidth, int sourceHeight, IntPtr destination, int destinationWidth, int destinationHeight, uint format, double horizontalFactor, double verticalFactor);

        [DllImport(Library)]
        public static extern int OvraResizeRotateImageCore(byte[] source, int sourceWidth, int sourceHeight, byte[] destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, float[] kernelTable, float stretch, int taps, int mode);

        [DllImport(Library)]
        public static extern int OvraResizeRotateImageCore(IntPtr source, int sourceWidth, int sourceHeight, IntPtr destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, float[] kernelTable, float stretch, int taps, int mode);

        [DllImport(Library)]
        public static extern int OvraResizeRotateImageROI(byte[] source, int sourceWidth, int sourceHeight, byte[] destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, int mode);

        [DllImport(Library)]
        public static extern int OvraResizeRotateImageROI(IntPtr source, int sourceWidth, int sourceHeight, IntPtr destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, int mode);

        [DllImport(Library)]
        public static extern int OvraRotateImage(byte[] source, byte[] destination, int width, int height, uint format, int mode);

        [DllImport(Library)]
        public static extern int OvraRotateImage(IntPtr source, IntPtr destination, int width, int height, uint format, int mode);

        [DllImport(Library)]
        public static extern int OvraRowStride(uint width, uint format, out UIntPtr stride);

        [DllImport(Library)]
        public static extern int OvraSelectKernelSupport(float ratio, out int taps, out float stretch);

        [DllImport(Library)]
        public static extern int OvraSmallResizeImage(byte[] source, int sourceWidth, int sourceHeight, byte[] destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, float[] kernelTable);

        [DllImport(Library)]
        public static extern int OvraSmallResizeImage(IntPtr source, int sourceWidth, int sourceHeight, IntPtr destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, float[] kernelTable);

        [DllImport(Library)]
        public static extern int OvraSmallResizeRotateImage(byte[] source, int sourceWidth, int sourceHeight, byte[] destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, float[] kernelTable, int mode);

        [DllImport(Library)]
        public static extern int OvraSmallResizeRotateImage(IntPtr source, int sourceWidth, int sourceHeight, IntPtr destination, int destinationWidth, int destinationHeight, uint format, int x, int y, int width, int height, float[] kernelTable, int mode);

        [DllImport(Library)]
        public static extern int OvraSoftFocus(byte[] source, byte[] destination, uint width, uint height, ref OvraSoftFocusParams @params);

        [DllImport(Library)]
        public static extern int OvraSoftFocus(IntPtr source, IntPtr destination, uint width, uint height, ref OvraSoftFocusParams @params);

        [DllImport(Library)]
        public static extern IntPtr OvraStatusText(int status);

        [DllImport(Library)]
        public static extern int OvraYUsm(byte[] source, byte[] destination, uint width, uint height, uint format, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraYUsm(IntPtr source, IntPtr destination, uint width, uint height, uint format, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraYUsmDouble(byte[] source, byte[] destination, uint width, uint height, uint format, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraYUsmDouble(IntPtr source, IntPtr destination, uint width, uint height, uint format, IntPtr context);

        [DllImport(Library)]
        public static extern int OvraYUsmDoubleSingleStep(byte[] source, byte[] destination, uint width, uint height, uint format, uint tapCount1, int[] weights1, uint tapCount2, int[] weights2, float amount1, short[] levelTable1, short[] differenceTable1, float amount2, short[] levelTable2, short[] differenceTable2);

        [DllImport(Library)]
        public static extern int OvraYUsmDoubleSingleStep(IntPtr source, IntPtr destination, uint width, uint height, uint format, uint tapCount1, int[] weights1, uint tapCount2, int[] weights2, float amount1, short[] levelTable1, short[] differenceTable1, float amount2, short[] levelTable2, short[] differenceTable2);

        [DllImport(Library)]
        public static extern int OvraYUsmDouble_Free(ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraYUsmDouble_Init(uint format, uint tapCount1, int[] weights1, uint tapCount2, int[] weights2, float amount1, short[] levelTable1, short[] differenceTable1, float amount2, short[] levelTable2, short[] differenceTable2, ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraYUsmMakeTable(uint format, int levelPointCount, [In, Out] OvraResponsePoint[] levelPoints, int differencePointCount, [In, Out] OvraResponsePoint[] differencePoints, short[] levelTable, short[] differenceTable);

        [DllImport(Library)]
        public static extern int OvraYUsmSingleStep(byte[] source, byte[] destination, uint width, uint height, uint format, int tapCount, int[] weights, float amount, short[] levelTable, short[] differenceTable);

        [DllImport(Library)]
        public static extern int OvraYUsmSingleStep(IntPtr source, IntPtr destination, uint width, uint height, uint format, int tapCount, int[] weights, float amount, short[] levelTable, short[] differenceTable);

        [DllImport(Library)]
        public static extern int OvraYUsm_Free(ref IntPtr context);

        [DllImport(Library)]
        public static extern int OvraYUsm_Init(uint format, int tapCount, int[] weights, float amount, short[] levelTable, short[] differenceTable, ref IntPtr context);
    }
}
