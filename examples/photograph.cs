// SPDX-License-Identifier: MIT
// A photograph from file to file: reads a 24-bit BMP, reduces it to 640 pixels of width, sharpens what
// the reduction has softened, and writes a BMP.
//
//   mcs photograph.cs Native.cs -out:photograph.exe
//   mono photograph.exe IN.bmp OUT.bmp
using System;
using System.IO;
using System.Runtime.InteropServices;
using OvraBase;

public static class Photograph
{
    private const int NewWidth = 640;
    private const int HeaderBytes = 54;

    private sealed class Picture
    {
        public readonly int Width;
        public readonly int Height;
        public readonly byte[] Pixels; // red, green, blue; top row first; rows without padding

        public Picture(int width, int height)
        {
            Width = width;
            Height = height;
            Pixels = new byte[checked(3 * width * height)];
        }

        public int DibBytes
        {
            get { return (3 * Width + 3) / 4 * 4 * Height; }
        }
    }

    private static void Check(int status)
    {
        if (status == (int)OvraStatusCode.OVRA_OK) return;
        string text = Marshal.PtrToStringAnsi(Native.OvraStatusText(status));
        throw new InvalidOperationException(text + " (status " + status + ")");
    }

    private static Picture Read(string name)
    {
        byte[] file = File.ReadAllBytes(name);
        if (file.Length < HeaderBytes || file[0] != 'B' || file[1] != 'M' || BitConverter.ToInt16(file, 28) != 24
            || BitConverter.ToInt32(file, 30) != 0 || BitConverter.ToInt32(file, 22) <= 0)
        {
            throw new InvalidDataException(name + " is not a BMP of 24 bits with the bottom row first");
        }
        var picture = new Picture(BitConverter.ToInt32(file, 18), BitConverter.ToInt32(file, 22));
        var dib = new byte[picture.DibBytes];
        Array.Copy(file, BitConverter.ToInt32(file, 10), dib, 0, dib.Length);
        Native.OvraDib2Raw(dib, picture.Pixels, (uint)picture.Width, (uint)picture.Height);
        return picture;
    }

    private static void Write(string name, Picture picture)
    {
        var dib = new byte[picture.DibBytes];
        Native.OvraRaw2Dib(picture.Pixels, dib, (uint)picture.Width, (uint)picture.Height);
        using (var writer = new BinaryWriter(File.Create(name)))
        {
            writer.Write(new[] { (byte)'B', (byte)'M' });
            writer.Write(HeaderBytes + dib.Length);
            writer.Write(0);
            writer.Write(HeaderBytes);
            writer.Write(40); // the bytes of the second header
            writer.Write(picture.Width);
            writer.Write(picture.Height);
            writer.Write((short)1); // plane
            writer.Write((short)24); // bits a pixel
            writer.Write(new byte[24]); // no compression; the rest may be 0
            writer.Write(dib);
        }
    }

    private static void Sharpen(Picture picture, uint format)
    {
        var weights = new int[Native.OVRA_YUSM_MAX_TAPS];
        var levels = new OvraResponsePoint[Native.OVRA_DEFAULT_LEVEL_POINTS];
        var differences = new OvraResponsePoint[Native.OVRA_DEFAULT_DIFFERENCE_POINTS];
        var levelTable = new short[Native.OVRA_LEVEL_TABLE_SIZE];
        var differenceTable = new short[Native.OVRA_DIFFERENCE_TABLE_SIZE];
        int taps;
        Check(Native.OvraGaussianWeights(0.8, weights.Length, out taps, weights));
        Check(Native.OvraDefaultCurves(levels, differences));
        Check(Native.OvraYUsmMakeTable(format, levels.Length, levels, differences.Length, differences, levelTable,
                                       differenceTable));
        Check(Native.OvraYUsmSingleStep(picture.Pixels, picture.Pixels, (uint)picture.Width, (uint)picture.Height,
                                        format, taps, weights, 2.0f, levelTable, differenceTable));
    }

    private static Picture Reduce(Picture photograph)
    {
        uint format;
        Check(Native.OvraMakePixelFormatCode(8, 3, (uint)OvraColorModel.OVRA_MODEL_RGB, 1,
                                             (uint)OvraRowOrder.OVRA_ROWS_TOP_DOWN, out format));
        long height = ((long)photograph.Height * NewWidth + photograph.Width / 2) / photograph.Width;
        var reduced = new Picture(NewWidth, (int)height);
        Check(Native.OvraResizeImage(photograph.Pixels, photograph.Width, photograph.Height, reduced.Pixels,
                                     reduced.Width, reduced.Height, format));
        Sharpen(reduced, format);
        return reduced;
    }

    public static int Main(string[] arguments)
    {
        if (arguments.Length != 2)
        {
            Console.Error.WriteLine("usage: photograph IN.bmp OUT.bmp");
            return 2;
        }
        try
        {
            Write(arguments[1], Reduce(Read(arguments[0])));
            return 0;
        }
        catch (Exception error)
        {
            Console.Error.WriteLine(error.Message);
            return 1;
        }
    }
}
