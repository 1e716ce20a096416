/*
 * Marovia for C, and for every language that can call C: grey images into embedded wavelet files,
 * and back, on bytes in memory. This header needs no other of the library.
 *
 *   marovia_image image = {sizeof image, samples, rows, cols, 0};
 *   marovia_compress_options options;
 *   marovia_buffer file;
 *   marovia_error error;
 *   marovia_compress_options_init(&options, sizeof options);
 *   options.rate = 0.25;
 *   if (marovia_compress(&image, &options, &file, &error) != MAROVIA_OK) puts(error.message);
 *   marovia_free(file.data);
 *
 * Threads: every function may be called from several threads at once; nothing is shared.
 *
 * Memory: what a function hands out in a marovia_buffer or marovia_picture is the caller's from
 * then on, and is given back by marovia_free. A function that fails hands out nothing, and sets the
 * pointer to NULL. What the caller passes in is only read, and not kept.
 *
 * Growth: structs that may get more fields begin with `size`, which the caller sets to the sizeof
 * that it was compiled with (the init functions do). A library newer than its caller takes the
 * defaults for what the caller does not know; an older one refuses a field it does not know unless
 * its bytes are 0. A size that no version of the struct has is MAROVIA_INVALID_ARGUMENT, and
 * nothing is handed out. Numbers of enumerations stay what they are.
 */
#ifndef MAROVIA_MAROVIA_H
#define MAROVIA_MAROVIA_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum marovia_status {
  MAROVIA_OK = 0,
  MAROVIA_OVERFLOW = 1,         /* a number left the range that the format gives it */
  MAROVIA_INDEX = 2,            /* a position lies outside an image */
  MAROVIA_INVALID_ARGUMENT = 3, /* a choice makes no sense (levels, rate, region, a NULL) */
  MAROVIA_MALFORMED = 4,        /* the bytes are not a file of the kind they were read as */
  MAROVIA_UNSUPPORTED = 5,      /* a file of a known kind, in a form that is not read */
  MAROVIA_LIMIT = 6,            /* more pixels than the caller allows; nothing was allocated */
  MAROVIA_IO = 7,               /* a file could not be read or written */
  MAROVIA_NO_MEMORY = 8,
  MAROVIA_INTERNAL = 9,  /* a fault of the library */
  MAROVIA_CANCELLED = 10 /* by the caller's listener */
} marovia_status;

/* What a compressed file holds; its extension names it. Inside, nothing does but in MAROVIA_AWH. */
typedef enum marovia_kind {
  MAROVIA_AWB = 0, /* WDR, raw bits */
  MAROVIA_AWA = 1, /* WDR, arithmetic coding */
  MAROVIA_AWD = 2, /* ASWDR, raw bits */
  MAROVIA_AWF = 3, /* ASWDR, arithmetic coding */
  MAROVIA_AWG = 4, /* ASWDR, arithmetic coding, lossless */
  MAROVIA_AWC = 5, /* ASWDR, second version, raw bits */
  MAROVIA_AWH = 6  /* context coding: lossy or lossless, and made shorter by cutting it */
} marovia_kind;

typedef enum marovia_wavelet {
  MAROVIA_DAUB_97 = 1,      /* floating point, the best pictures at a given rate */
  MAROVIA_INTEGER_53 = 2,   /* exactly invertible, as lossless needs it */
  MAROVIA_INTEGER_22 = 3,   /* exactly invertible, one more lifting step */
  MAROVIA_BEST_WAVELET = -1 /* as an option of lossless coding: both integer ones at once, on
                               two threads; the shorter file is kept */
} marovia_wavelet;

/* What went wrong: one sentence in UTF-8, closed by a 0 byte; empty after a success. */
typedef struct marovia_error {
  int32_t status;
  char message[252];
} marovia_error;

typedef struct marovia_buffer {
  uint8_t* data;
  size_t size;
} marovia_buffer;

/* An image of the caller: grey values 0 (black) to 255 (white), row 0 at the top. */
typedef struct marovia_image {
  size_t size;            /* sizeof(marovia_image) */
  const uint8_t* samples; /* row by row */
  int32_t rows;
  int32_t cols;
  size_t stride; /* bytes from one row to the next; 0: no gaps */
} marovia_image;

/* Rows row1 to row2 and columns col1 to col2 of an image, all included, from 0. */
typedef struct marovia_region {
  int32_t row1;
  int32_t col1;
  int32_t row2;
  int32_t col2;
} marovia_region;

/* The state of a run after a pass over one bit plane. */
typedef struct marovia_pass {
  int32_t number; /* 1 for the first */
  int32_t found;  /* coefficients found so far */
  int64_t bits;   /* written or read so far */
  double threshold;
} marovia_pass;

/* Told of each pass and once more of the end; what is not 0 ends the call with MAROVIA_CANCELLED,
 * and nothing is handed out. `pass` is NULL where a search (by bytes, PSNR or wavelet) tries what
 * it may drop: such a call may come from another thread, and from two at once. */
typedef int32_t (*marovia_listener)(void* context, const marovia_pass* pass);

typedef struct marovia_compress_options {
  size_t size;
  int32_t kind;    /* MAROVIA_AWH */
  int32_t wavelet; /* 0: MAROVIA_DAUB_97, where lossless MAROVIA_INTEGER_22 */
  int32_t levels;  /* of the transform; 0: as the size of the image suggests */
  int32_t pad;     /* 1: sides of any size come back; 0: code them as they are. MAROVIA_AWH always
                      pads */
  double rate;     /* bits per pixel, the header included: 0.5. Ignored where lossless */
  int64_t bytes;   /* the most bytes that the file may have, in place of the rate; 0: by the rate.
                      Below 0 it is refused */
  int32_t has_region;
  float share;           /* the part of the bits that the region gets: 0.9 */
  marovia_region region; /* looked at if has_region is not 0 */
  double psnr;           /* the least PSNR in decibels, in place of the rate; 0: by the rate */
  int32_t lossless;      /* 1: every pixel, in place of a rate, bytes or a PSNR: of MAROVIA_AWH, and
                            of MAROVIA_AWG, which is so in any case. A MAROVIA_AWH then has no region */
  int32_t threads;       /* at most, as many as help; 0: as many as the machine has processors. The
                            file is the same on any number. 1 */
  marovia_listener listener; /* or NULL */
  void* context;             /* for the listener */
} marovia_compress_options;

typedef struct marovia_decompress_options {
  size_t size;
  double rate;               /* bits per pixel to decode; 0: all. Ignored by MAROVIA_AWG */
  int64_t max_pixels;        /* larger images are refused before anything is allocated; 0: 2^26 */
  marovia_listener listener; /* or NULL */
  void* context;             /* for the listener */
  int32_t threads;           /* as in marovia_compress_options */
  int32_t reduce; /* a picture whose sides are 2^reduce smaller, rounded up, in a fraction
                     of the time: 0. Held to the levels of the file */
} marovia_decompress_options;

typedef struct marovia_truncate_options {
  size_t size;
  double rate;        /* just one of the two: bits per pixel to keep, */
  int64_t bytes;      /* or the most bytes that the result may have; 0: by the other */
  int64_t max_pixels; /* files of larger images are refused; 0: 2^26 */
} marovia_truncate_options;

/* A decoded image. Its rows lie one after another without gaps. */
typedef struct marovia_picture {
  size_t size;
  uint8_t* samples; /* the caller's, to be given to marovia_free */
  int32_t rows;
  int32_t cols;
  int32_t rate_held; /* 1: the rate asked for was above the file's own */
  int32_t truncated; /* 1: bits that were asked for are missing; the picture is what was there */
} marovia_picture;

/* Room of the caller for a picture, which has just as many rows and columns. */
typedef struct marovia_canvas {
  size_t size;
  uint8_t* samples; /* row by row */
  int32_t rows;
  int32_t cols;
  size_t stride; /* bytes from one row to the next; 0: no gaps */
} marovia_canvas;

/* How far two images are apart. */
typedef struct marovia_measures {
  size_t size;
  double sup_norm; /* the largest difference of two samples */
  double mean_square_error;
  double root_mean_square;
  double psnr; /* in decibels of a peak of 255; infinite where they are the same */
} marovia_measures;

/* What a compressed file says of itself. */
typedef struct marovia_info {
  size_t size;
  int32_t kind;
  int32_t wavelet;
  int32_t levels;
  int32_t rows; /* of the image that comes out */
  int32_t cols;
  int32_t coded_rows; /* of the coded image, larger where the sides were padded */
  int32_t coded_cols;
  int32_t exponent; /* the first threshold is 2^exponent */
  float mean;
  int32_t budget;       /* bits that the compressor might spend; -1 for MAROVIA_AWG, MAROVIA_AWH */
  int64_t bits_present; /* of the stream, behind the header */
  int32_t fills_budget; /* 1: the stream is as long as the budget */
} marovia_info;

/* "0.1.0", of the library in use. */
const char* marovia_version(void);

/* "awb" ... "awh" for a kind, NULL for another number; and back, -1 for another text. */
const char* marovia_extension(int32_t kind);
int32_t marovia_kind_of_extension(const char* extension);

/* MAROVIA_AWH where a file begins with the four bytes that name it, else -1. */
int32_t marovia_kind_of_content(const void* file, size_t file_size);

/* Fill in the defaults, and `size`, which must be the sizeof of the struct; a NULL or a size that
 * cannot be are MAROVIA_INVALID_ARGUMENT. */
marovia_status marovia_compress_options_init(marovia_compress_options* options, size_t size);
marovia_status marovia_decompress_options_init(marovia_decompress_options* options, size_t size);

/* In all of these `options` may be NULL for the defaults, and `error` NULL where the status is
 * enough. The caller sets `size` of every struct that has one before the call, also
 * of those that are filled in. */

marovia_status marovia_compress(const marovia_image* image, const marovia_compress_options* options,
                                marovia_buffer* file, marovia_error* error);

marovia_status marovia_decompress(const void* file, size_t file_size, int32_t kind,
                                  const marovia_decompress_options* options,
                                  marovia_picture* picture, marovia_error* error);

/* The same into memory of the caller, which a call that fails leaves as it is. The samples of
 * `picture` are then those of the canvas, and are not for marovia_free. The size of the picture, by
 * marovia_inspect, must be that of the canvas. */
marovia_status marovia_decompress_into(const void* file, size_t file_size, int32_t kind,
                                       const marovia_decompress_options* options,
                                       const marovia_canvas* canvas, marovia_picture* picture,
                                       marovia_error* error);

/* Reads the header, and decodes nothing. max_pixels 0: 2^26. */
marovia_status marovia_inspect(const void* file, size_t file_size, int32_t kind, int64_t max_pixels,
                               marovia_info* info, marovia_error* error);

/* The grey values of an image file, told by its first bytes: PGM, PPM, PBM, PAM or BMP. `altered`
 * is 1 where those are not all that the file holds: colour, alpha, or values of another range. It
 * may be NULL. max_pixels 0: 2^26. */
marovia_status marovia_read_image(const void* file, size_t file_size, int64_t max_pixels,
                                  marovia_picture* picture, int32_t* altered, marovia_error* error);

/* A shorter file that decodes just as the long one does at that rate, without coding again (of a
 * MAROVIA_AWH its first bytes). Its kind, MAROVIA_AWF if a MAROVIA_AWG was cut, is put into
 * `result_kind` unless that is NULL. The options may not be NULL. */
marovia_status marovia_truncate(const void* file, size_t file_size, int32_t kind,
                                const marovia_truncate_options* options, marovia_buffer* result,
                                int32_t* result_kind, marovia_error* error);

/* Two images of one size, all over, or in a region unless that is NULL. */
marovia_status marovia_measure(const marovia_image* source, const marovia_image* reconstruction,
                               const marovia_region* region, marovia_measures* measures,
                               marovia_error* error);

/* What each of `count` rates, in bits per pixel, is worth: psnr[i] is that of rates[i], infinite
 * where the picture is the image. The image is coded once, at the highest of them, whatever rate,
 * bytes or PSNR the options name; each lower one is a start of that file. Lossless coding and a
 * region are refused. */
marovia_status marovia_curve(const marovia_image* image, const marovia_compress_options* options,
                             const double* rates, size_t count, double* psnr, marovia_error* error);

/* Gives back memory of the library; NULL is fine. */
void marovia_free(void* memory);

#ifdef __cplusplus
}
#endif

#endif
