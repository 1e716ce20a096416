#!/bin/bash
# Makes the pictures of this folder again, of the plain files in ../images: needs Netpbm, ImageMagick 6,
# libtiff's and libjpeg's tools, exiftool, Python 3.
cd "$(dirname "$0")"
set -e
from=../images
convert=/usr/bin/convert

pnmtopng $from/colour.ppm >colour8.png
pnmtopng -interlace $from/colour.ppm >colour_interlaced.png
pnmtopng -interlace $from/grey.pgm >grey_interlaced.png
pamdepth 65535 $from/colour.ppm | pnmtopng -force >colour16.png
pamdepth 65535 $from/grey.pgm | pnmtopng -force >grey16.png
pnmtopng $from/palette.ppm >palette4.png
pnmtopng $from/two.ppm >palette1.png
pnmtopng -transparent '#0A141E' $from/palette.ppm >palette_transparent.png
pnmtopng -transparent '#000000' $from/grey.pgm >grey_transparent.png
pnmtopng $from/bits.pgm >bits.png
pnmtopng -interlace $from/grey15_raw.pgm >grey4_interlaced.png
pnmtopng -alpha $from/grey_raw.pgm $from/colour.ppm >colour_alpha.png

$convert $from/colour.ppm -compress none tiff:strips.tif
tiffcp -c lzw:2 -r 3 strips.tif colour_lzw.tif
tiffcp -c zip -t -w 16 -l 16 -B strips.tif colour_tiled.tif
tiffcp -c packbits -p separate -r 2 strips.tif colour_planes.tif
tiffcp -c none -p separate -t -w 16 -l 16 strips.tif colour_plane_tiles.tif
$convert $from/colour.ppm -alpha set -channel A -evaluate set 60% -depth 8 tiff:colour_alpha.tif
pnmtotiff -none $from/palette.ppm >palette4.tif 2>/dev/null
$convert $from/bits.pgm -type bilevel -compress group4 tiff:bits_group4.tif
pamdepth 65535 $from/grey.pgm | pnmtotiff -lzw >strips16.tif 2>/dev/null
tiffcp -8 -B strips16.tif grey16_big.tif
$convert $from/grey.pgm -compress none tiff:grey.tif
tiffcp grey.tif strips.tif pages.tif
tiffset -s 274 6 grey.tif && cp grey.tif grey_turned.tif

cjpeg -quality 90 -sample 1x1 $from/colour.ppm >colour.jpg
cjpeg -quality 90 -sample 1x1 -progressive $from/colour.ppm >colour_progressive.jpg
djpeg -pnm colour.jpg | pnmtoplainpnm >colour_jpg.ppm
cjpeg -quality 100 -grayscale $from/grey.pgm >grey.jpg
djpeg -pnm grey.jpg | pnmtoplainpnm >grey_jpg.pgm
cp grey.jpg grey_turned.jpg
exiftool -q -overwrite_original -n -Orientation=8 grey_turned.jpg
pamflip -r270 $from/grey.pgm | pnmtoplainpnm >turned.pgm
djpeg -pnm grey.jpg | pamflip -r90 | pnmtoplainpnm >turned_jpg.pgm

# Refused: inks, floating-point samples.
$convert $from/colour.ppm -colorspace CMYK -depth 8 tiff:inks.tif
python3 - >floats.tif <<'P'
import struct, sys
fields = [(256, 2), (257, 2), (258, 32), (259, 1), (262, 1), (273, 134), (277, 1), (278, 2), (279, 16), (339, 3)]
out = b'II*\0' + struct.pack('<IH', 8, len(fields))
for tag, value in fields: out += struct.pack('<HHII', tag, 3, 1, value)
sys.stdout.buffer.write(out + bytes(4) + struct.pack('<4f', 0, 1, 2, 3))
P
rm -f strips.tif strips16.tif grey.tif
