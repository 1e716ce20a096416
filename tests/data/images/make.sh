#!/bin/bash
# Makes the images of this folder again: needs Netpbm, ImageMagick 6 and Python 3.
cd "$(dirname "$0")"
set -e
CONVERT=/usr/bin/convert
# FORMAT, then a Python tuple of x and y: a plain file of 13 x 7 pixels.
pixels() { python3 -c "
print('$1', 13, 7, ${3:-255})
for y in range(7): print(*[v for x in range(13) for v in $2])"; }
pixels P3 '((19*x+3*y)%256, (37*y+x*x)%256, (255-11*x*y)%256)' > colour.ppm
pixels P3 '[(10,20,30),(200,0,0),(0,200,0),(0,0,200),(255,255,255),(90,90,90),(250,240,10),(1,2,3)][(x//3+2*y)%8]' > palette.ppm
pixels P3 '[(10,20,30),(250,240,10)][(x*y+x//2)%2]' > two.ppm
pixels P2 '((17*x+29*y)%256,)' > grey.pgm
pixels P2 '((170*x+90*y)%1024,)' 1023 > grey1023.pgm

ppmtobmp -windows -bpp=24 colour.ppm > colour24.bmp
ppmtobmp -os2 -bpp=24 colour.ppm > colour24_core.bmp
$CONVERT colour.ppm BMP:colour24_v5.bmp
$CONVERT colour.ppm -alpha set BMP:colour32_v5.bmp
$CONVERT colour.ppm -define bmp:subtype=RGB555 BMP:colour555.bmp
$CONVERT colour.ppm -define bmp:subtype=RGB565 BMP:colour565.bmp
ppmtobmp -windows -bpp=8 palette.ppm > palette8.bmp
ppmtobmp -windows -bpp=4 palette.ppm > palette4.bmp
ppmtobmp -os2 -bpp=4 palette.ppm > palette4_core.bmp
ppmtobmp -windows -bpp=1 two.ppm > palette1.bmp
$CONVERT palette.ppm -type palette -compress RLE BMP3:palette_rle8.bmp
ppmtobmp -windows -bpp=8 grey.pgm > grey8.bmp
$CONVERT grey.pgm BMP3:grey24.bmp

pamtopnm grey.pgm > grey_raw.pgm
$CONVERT grey.pgm -set comment 'made by hand # twice' grey_comment.pgm
pamtopnm grey1023.pgm > grey1023_raw.pgm
pamdepth 65535 grey.pgm > grey65535_raw.pgm
pamdepth 15 grey.pgm > grey15_raw.pgm
pnmtoplainpnm grey15_raw.pgm > grey15.pgm
pamtopnm colour.ppm > colour_raw.ppm
cat grey15_raw.pgm grey_raw.pgm > two_images.pgm
pixels P2 '(255*((x*y+x//2)%2),)' > bits.pgm
pgmtopbm -threshold bits.pgm > bits_raw.pbm
pnmtoplainpnm bits_raw.pbm > bits.pbm
pamtopam <colour.ppm > colour.pam
pamstack -tupletype=RGB_ALPHA colour.pam grey_raw.pgm > colour_alpha.pam

for depth in 555 565; do $CONVERT colour$depth.bmp -compress none ppm:colour$depth.ppm; done
python3 - <<'P'
import struct
def put(d, at, fmt, v): struct.pack_into(fmt, d, at, v)
def read(n): return bytearray(open(n, 'rb').read())
def write(n, d):
    put(d, 2, '<I', len(d))  # the size of the file
    open(n, 'wb').write(d)

# Rows from the top: the height negated, the rows of 40 bytes turned round.
d = read('colour24.bmp')
rows = [d[54 + 40 * r:94 + 40 * r] for r in range(7)]
put(d, 22, '<i', -7)
write('colour24_topdown.bmp', d[:54] + b''.join(reversed(rows)))

# V4: V5 without the last 16 bytes of its header.
d = read('colour24_v5.bmp')
put(d, 10, '<I', 122); put(d, 14, '<I', 108)
write('colour24_v4.bmp', d[:122] + d[138:])

# The masks of a 40-byte header follow it.
d = read('colour32_v5.bmp')
put(d, 10, '<I', 66); put(d, 14, '<I', 40)
write('colour32_masks.bmp', d[:66] + d[138:])
put(d, 10, '<I', 54); put(d, 30, '<I', 0)
write('colour32.bmp', d[:54] + d[138:])

# OS/2 2: a header of 64 bytes, and one of the first 16 of these.
d = read('palette8.bmp')
pixels = d[1078:]
colours = d[54:1078]
put(d, 10, '<I', 1102); put(d, 14, '<I', 64)
write('palette8_os2.bmp', d[:54] + bytes(24) + colours + pixels)
put(d, 10, '<I', 1054); put(d, 14, '<I', 16)
write('palette8_os2_short.bmp', d[:30] + colours + pixels)

# 4-bit run-length code: runs, literals and a jump (over pixels of colour 0), 13 x 7.
d = read('palette4.bmp')[:118]
put(d, 30, '<I', 2)
code = bytes([13, 0x12, 0, 0,                       # a row of alternating 1 and 2
              0, 5, 0x34, 0x56, 0x70, 0, 8, 0x55, 0, 0,   # five literals, padded; a run of eight
              0, 7, 0x12, 0x34, 0x56, 0x70, 6, 0x77, 0, 0,
              3, 0x44, 0, 2, 4, 1, 6, 0x36, 0, 0,   # a run, a jump by 4 columns and 1 row
              1, 0x70, 0, 0,                        # a row ended early
              0, 2, 2, 0, 11, 0x61, 0, 1])          # a jump, a run, the end
put(d, 34, '<I', len(code))
write('palette_rle4.bmp', d + code)

# 8-bit run-length code with literals and a jump.
d = read('palette8.bmp')[:1078]
put(d, 30, '<I', 1)
code = bytes([13, 1, 0, 0, 0, 3, 2, 3, 4, 0, 10, 5, 0, 0,
              0, 4, 6, 7, 1, 2, 9, 3, 0, 0, 2, 4, 0, 2, 5, 2, 6, 7, 0, 0, 13, 2, 0, 1])
put(d, 34, '<I', len(code))
write('palette_rle8_jump.bmp', d + code)
P
for f in palette_rle4 palette_rle8_jump; do $CONVERT $f.bmp -compress none ppm:$f.ppm; done
