{ SPDX-License-Identifier: MIT }
{ A photograph from file to file: reads a 24-bit BMP, reduces it to 640 pixels of width, sharpens what the
  reduction has softened, and writes a BMP.

    fpc -FuPATH_OF_OvraBase.pas photograph.pas
    ./photograph IN.bmp OUT.bmp }
program Photograph;

{$mode objfpc}{$H+}

uses
  Classes, SysUtils, OvraBase;

const
  NewWidth = 640;
  HeaderBytes = 54;

type
  TBytes = array of Byte;

  TPicture = record
    Width, Height: LongInt;
    Pixels: TBytes; { red, green, blue; top row first; rows without padding }
  end;

  TBmpHeader = packed record
    Magic: array[0..1] of AnsiChar;
    FileBytes, Reserved, PixelsAt, InfoBytes: LongWord;
    Width, Height: LongInt;
    Planes, BitsPerPixel: Word;
    Rest: array[0..5] of LongWord; { no compression; the rest may be 0 }
  end;

procedure Check(Status: TOvraStatus);
begin
  if Status <> OVRA_OK then
    raise Exception.CreateFmt('%s (status %d)', [OvraStatusText(Status), Status]);
end;

function NewPicture(Width, Height: LongInt): TPicture;
begin
  Result.Width := Width;
  Result.Height := Height;
  Result.Pixels := nil;
  SetLength(Result.Pixels, 3 * PtrInt(Width) * Height);
end;

function NewDib(const Picture: TPicture): TBytes;
begin
  Result := nil;
  SetLength(Result, (3 * PtrInt(Picture.Width) + 3) div 4 * 4 * Picture.Height);
end;

function ReadPicture(const Name: string): TPicture;
var
  Stream: TFileStream;
  Header: TBmpHeader;
  Dib: TBytes;
begin
  Stream := TFileStream.Create(Name, fmOpenRead);
  try
    Stream.ReadBuffer(Header, SizeOf(Header));
    if (Header.Magic <> 'BM') or (Header.BitsPerPixel <> 24) or (Header.Rest[0] <> 0) or (Header.Height <= 0) then
      raise Exception.Create(Name + ' is not a BMP of 24 bits with the bottom row first');
    Result := NewPicture(Header.Width, Header.Height);
    Dib := NewDib(Result);
    Stream.Position := Header.PixelsAt;
    Stream.ReadBuffer(Dib[0], Length(Dib));
  finally
    Stream.Free;
  end;
  OvraDib2Raw(@Dib[0], @Result.Pixels[0], Result.Width, Result.Height);
end;

procedure WritePicture(const Name: string; const Picture: TPicture);
var
  Stream: TFileStream;
  Header: TBmpHeader;
  Dib: TBytes;
begin
  Dib := NewDib(Picture);
  OvraRaw2Dib(@Picture.Pixels[0], @Dib[0], Picture.Width, Picture.Height);
  FillChar(Header, SizeOf(Header), 0);
  Header.Magic := 'BM';
  Header.FileBytes := HeaderBytes + Length(Dib);
  Header.PixelsAt := HeaderBytes;
  Header.InfoBytes := 40;
  Header.Width := Picture.Width;
  Header.Height := Picture.Height;
  Header.Planes := 1;
  Header.BitsPerPixel := 24;
  Stream := TFileStream.Create(Name, fmCreate);
  try
    Stream.WriteBuffer(Header, SizeOf(Header));
    Stream.WriteBuffer(Dib[0], Length(Dib));
  finally
    Stream.Free;
  end;
end;

procedure Sharpen(const Picture: TPicture; Format: TOvraPixelFormatCode);
var
  Weights: array[0..OVRA_YUSM_MAX_TAPS - 1] of LongInt;
  Taps: LongInt;
  Levels: array[0..OVRA_DEFAULT_LEVEL_POINTS - 1] of TOvraResponsePoint;
  Differences: array[0..OVRA_DEFAULT_DIFFERENCE_POINTS - 1] of TOvraResponsePoint;
  LevelTable: array[0..OVRA_LEVEL_TABLE_SIZE - 1] of SmallInt;
  DifferenceTable: array[0..OVRA_DIFFERENCE_TABLE_SIZE - 1] of SmallInt;
begin
  Check(OvraGaussianWeights(0.8, OVRA_YUSM_MAX_TAPS, @Taps, @Weights));
  Check(OvraDefaultCurves(@Levels, @Differences));
  Check(OvraYUsmMakeTable(Format, OVRA_DEFAULT_LEVEL_POINTS, @Levels, OVRA_DEFAULT_DIFFERENCE_POINTS, @Differences,
    @LevelTable, @DifferenceTable));
  Check(OvraYUsmSingleStep(@Picture.Pixels[0], @Picture.Pixels[0], Picture.Width, Picture.Height, Format, Taps,
    @Weights, 2.0, @LevelTable, @DifferenceTable));
end;

function Reduced(const Photo: TPicture): TPicture;
var
  Format: TOvraPixelFormatCode;
begin
  Check(OvraMakePixelFormatCode(8, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN, @Format));
  Result := NewPicture(NewWidth, (Int64(Photo.Height) * NewWidth + Photo.Width div 2) div Photo.Width);
  Check(OvraResizeImage(@Photo.Pixels[0], Photo.Width, Photo.Height, @Result.Pixels[0], Result.Width, Result.Height,
    Format));
  Sharpen(Result, Format);
end;

begin
  if ParamCount <> 2 then
  begin
    WriteLn('usage: photograph IN.bmp OUT.bmp');
    Halt(2);
  end;
  try
    WritePicture(ParamStr(2), Reduced(ReadPicture(ParamStr(1))));
  except
    on E: Exception do
    begin
      WriteLn(E.Message);
      Halt(1);
    end;
  end;
end.
