/* The C interface as a C99 program uses it, from the shared library. */
#include <math.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>

#include "marovia/marovia.h"

enum { kRows = 70, kCols = 50, kStride = 64 };

static int failures = 0;

#define CHECK(condition)                                                      \
  do {                                                                        \
    if (!(condition)) {                                                       \
      failures++;                                                             \
      fprintf(stderr, "%s:%d: not so: %s\n", __FILE__, __LINE__, #condition); \
    }                                                                         \
  } while (0)

static uint8_t samples[kRows * kStride];

static marovia_image Picture(void) {
  marovia_image image = {sizeof image, samples, kRows, kCols, kStride};
  for (int r = 0; r < kRows; r++) {
    for (int c = 0; c < kStride; c++)
      samples[r * kStride + c] = (uint8_t)(c < kCols ? (r * 3 + c * c / 20) % 256 : 255);
  }
  return image;
}

static marovia_buffer Lossless(void) {
  marovia_image image = Picture();
  marovia_compress_options options;
  marovia_buffer file;
  marovia_compress_options_init(&options, sizeof options);
  options.kind = MAROVIA_AWG;
  CHECK(marovia_compress(&image, &options, &file, NULL) == MAROVIA_OK);
  return file;
}

static void ImageFilesAreReadAndTellWhatTheyLose(void) {
  static const char grey[] = "P2 2 1 255 7 9", colour[] = "P3 1 1 255 9 9 0", none[] = "GIF89a";
  marovia_picture picture = {sizeof picture, NULL, 0, 0, 0, 0};
  int32_t altered = -1;
  CHECK(marovia_read_image(grey, sizeof grey - 1, 0, &picture, &altered, NULL) == MAROVIA_OK);
  CHECK(picture.rows == 1 && picture.cols == 2 && picture.samples[1] == 9 && altered == 0);
  marovia_free(picture.samples);
  CHECK(marovia_read_image(grey, sizeof grey - 1, 1, &picture, NULL, NULL) == MAROVIA_LIMIT);
  CHECK(picture.samples == NULL);
  CHECK(marovia_read_image(colour, sizeof colour - 1, 0, &picture, &altered, NULL) == MAROVIA_OK);
  CHECK(picture.samples[0] == 8 && altered == 1);
  marovia_free(picture.samples);
  CHECK(marovia_read_image(none, sizeof none - 1, 0, &picture, NULL, NULL) == MAROVIA_UNSUPPORTED);
}

static void LosslessComesBackThroughAStride(void) {
  marovia_buffer file = Lossless();
  marovia_picture back = {sizeof back, NULL, 0, 0, 0, 0};
  marovia_info info = {.size = sizeof info};
  marovia_error error;
  CHECK(marovia_inspect(file.data, file.size, MAROVIA_AWG, 0, &info, &error) == MAROVIA_OK);
  CHECK(info.rows == kRows && info.cols == kCols && info.budget == -1);
  CHECK(info.wavelet == MAROVIA_INTEGER_22);
  CHECK(marovia_decompress(file.data, file.size, MAROVIA_AWG, NULL, &back, &error) == MAROVIA_OK);
  CHECK(error.status == MAROVIA_OK && error.message[0] == 0);
  CHECK(back.rows == kRows && back.cols == kCols && !back.truncated);
  for (int r = 0; r < back.rows; r++)
    CHECK(memcmp(back.samples + r * kCols, samples + r * kStride, kCols) == 0);
  marovia_free(back.samples);

  marovia_buffer cut;
  const marovia_truncate_options shorter = {sizeof shorter, 0, 300, 0};
  int32_t kind = -1;
  CHECK(marovia_truncate(file.data, file.size, MAROVIA_AWG, &shorter, &cut, &kind, NULL) ==
        MAROVIA_OK);
  CHECK(cut.size <= 300 && kind == MAROVIA_AWF);
  CHECK(marovia_decompress(cut.data, cut.size, kind, NULL, &back, NULL) == MAROVIA_OK);
  CHECK(!back.truncated);
  marovia_free(back.samples);
  CHECK(marovia_decompress(cut.data, cut.size / 2, kind, NULL, &back, NULL) == MAROVIA_OK);
  CHECK(back.truncated);
  marovia_free(back.samples);
  marovia_free(cut.data);
  marovia_free(file.data);
}

static void OptionsReachTheCodec(void) {
  marovia_image image = Picture();
  marovia_compress_options options;
  marovia_buffer file;
  marovia_info info = {.size = sizeof info};
  marovia_compress_options_init(&options, sizeof options);
  options.kind = marovia_kind_of_extension("awb");
  options.wavelet = MAROVIA_INTEGER_22;
  options.levels = 2;
  options.bytes = 200;
  options.has_region = 1;
  options.region = (marovia_region){10, 10, 40, 40};
  CHECK(marovia_compress(&image, &options, &file, NULL) == MAROVIA_OK);
  CHECK(file.size <= 200);
  CHECK(marovia_inspect(file.data, file.size, MAROVIA_AWB, 0, &info, NULL) == MAROVIA_OK);
  CHECK(info.wavelet == MAROVIA_INTEGER_22 && info.levels == 2);
  marovia_free(file.data);

  marovia_compress_options_init(&options, sizeof options);
  options.psnr = 35;
  CHECK(marovia_compress(&image, &options, &file, NULL) == MAROVIA_OK);
  CHECK(file.size > 20);
  marovia_free(file.data);
  options.kind = MAROVIA_AWG;
  options.wavelet = MAROVIA_BEST_WAVELET;
  CHECK(marovia_compress(&image, &options, &file, NULL) == MAROVIA_OK);
  marovia_free(file.data);
  options.kind = MAROVIA_AWF;
  options.wavelet = 0;
  options.psnr = -1;
  CHECK(marovia_compress(&image, &options, &file, NULL) == MAROVIA_INVALID_ARGUMENT);
  options.kind = MAROVIA_AWH;
  options.wavelet = MAROVIA_BEST_WAVELET;
  options.psnr = 0;
  options.lossless = 1;
  CHECK(marovia_compress(&image, &options, &file, NULL) == MAROVIA_OK);
  CHECK(marovia_kind_of_content(file.data, file.size) == MAROVIA_AWH);
  marovia_decompress_options half;
  marovia_picture back = {.size = sizeof back};
  marovia_decompress_options_init(&half, sizeof half);
  half.reduce = 1;
  half.threads = 2;
  CHECK(marovia_decompress(file.data, file.size, MAROVIA_AWH, &half, &back, NULL) == MAROVIA_OK);
  CHECK(back.rows == (image.rows + 1) / 2 && back.cols == (image.cols + 1) / 2);
  marovia_free(back.samples);
  half.reduce = -1;
  CHECK(marovia_decompress(file.data, file.size, MAROVIA_AWH, &half, &back, NULL) ==
        MAROVIA_INVALID_ARGUMENT);
  CHECK(marovia_kind_of_content(file.data, 3) == -1 && marovia_kind_of_content(NULL, 9) == -1);
  marovia_free(file.data);
  CHECK(strcmp(marovia_extension(MAROVIA_AWH), "awh") == 0);
  CHECK(marovia_extension(MAROVIA_AWH + 1) == NULL && marovia_kind_of_extension("awz") == -1);
}

/* Every refusal: its status, a message, and nothing handed out. */
static void RefusalsSayWhatIsWrong(void) {
  marovia_image image = Picture();
  marovia_compress_options options;
  marovia_buffer file;
  marovia_error error;
  marovia_compress_options_init(&options, sizeof options);
  CHECK(marovia_compress(NULL, NULL, &file, &error) == MAROVIA_INVALID_ARGUMENT);
  CHECK(strcmp(error.message, "The image is NULL.") == 0 && file.data == NULL);
  CHECK(marovia_compress(&image, NULL, NULL, NULL) == MAROVIA_INVALID_ARGUMENT);
  CHECK(marovia_compress_options_init(NULL, sizeof options) == MAROVIA_INVALID_ARGUMENT);

  const int32_t choices[][2] = {{9, 0}, {-1, 0}, {MAROVIA_AWF, 4}, {MAROVIA_AWG, MAROVIA_DAUB_97}};
  for (int i = 0; i < 4; i++) {
    options.kind = choices[i][0];
    options.wavelet = choices[i][1];
    CHECK(marovia_compress(&image, &options, &file, &error) == MAROVIA_INVALID_ARGUMENT);
    CHECK(error.status == MAROVIA_INVALID_ARGUMENT && error.message[0] != 0);
  }
  marovia_compress_options_init(&options, sizeof options);
  options.rate = NAN;
  CHECK(marovia_compress(&image, &options, &file, &error) == MAROVIA_INVALID_ARGUMENT);

  image.stride = kCols - 1;
  CHECK(marovia_compress(&image, NULL, &file, &error) == MAROVIA_INVALID_ARGUMENT);
  image.stride = 0;
  image.rows = 0;
  CHECK(marovia_compress(&image, NULL, &file, &error) == MAROVIA_INVALID_ARGUMENT);
  image.rows = 2000000000; /* refused before a sample is looked at */
  CHECK(marovia_compress(&image, NULL, &file, &error) == MAROVIA_LIMIT);
  image = Picture();
  options.rate = 1;
  options.bytes = INT64_MIN;
  CHECK(marovia_compress(&image, &options, &file, &error) == MAROVIA_INVALID_ARGUMENT);

  marovia_buffer whole = Lossless();
  marovia_picture back = {sizeof back, samples, 1, 1, 1, 1};
  marovia_decompress_options limit = {.size = sizeof limit, .max_pixels = 1000};
  CHECK(marovia_decompress("short", 5, MAROVIA_AWF, NULL, &back, &error) == MAROVIA_MALFORMED);
  CHECK(back.samples == NULL && back.rows == 0);
  CHECK(marovia_decompress(NULL, 5, MAROVIA_AWF, NULL, &back, &error) == MAROVIA_INVALID_ARGUMENT);
  CHECK(marovia_decompress(whole.data, whole.size, MAROVIA_AWG, &limit, &back, &error) ==
        MAROVIA_LIMIT);
  marovia_truncate_options cut = {sizeof cut, 0, -1, 0};
  CHECK(marovia_truncate(whole.data, whole.size, MAROVIA_AWG, &cut, &file, NULL, &error) ==
        MAROVIA_INVALID_ARGUMENT);
  cut.bytes = 100;
  cut.max_pixels = 1000;
  CHECK(marovia_truncate(whole.data, whole.size, MAROVIA_AWG, &cut, &file, NULL, &error) ==
        MAROVIA_LIMIT);
  limit.max_pixels = 0; /* the default, here as for marovia_inspect */
  CHECK(marovia_decompress(whole.data, whole.size, MAROVIA_AWG, &limit, &back, &error) ==
        MAROVIA_OK);
  marovia_free(back.samples);
  const size_t sizes[] = {0, 9, 12, sizeof back - 8, sizeof back + 4, 1 << 20};
  for (int i = 0; i < 6; i++) {
    back.size = sizes[i];
    CHECK(marovia_decompress(whole.data, whole.size, MAROVIA_AWG, NULL, &back, &error) ==
          MAROVIA_INVALID_ARGUMENT);
  }
  marovia_free(whole.data);
  marovia_free(NULL);
}

/* A picture in rows of the caller's, and how far it is from another. */
static void PicturesAreDecodedInPlaceAndMeasured(void) {
  static uint8_t room[kRows * kStride];
  const marovia_image image = Picture();
  marovia_image back = {sizeof back, room, kRows, kCols, kStride};
  marovia_canvas canvas = {sizeof canvas, room, kRows, kCols, kStride};
  marovia_picture picture = {.size = sizeof picture};
  marovia_measures measures = {.size = sizeof measures};
  const marovia_region corner = {0, 0, 9, 9};
  const marovia_region outside = {0, 0, kRows, 9};
  marovia_buffer file = Lossless();
  room[kCols] = 77; /* between two rows */
  CHECK(marovia_decompress_into(file.data, file.size, MAROVIA_AWG, NULL, &canvas, &picture, NULL) ==
        MAROVIA_OK);
  CHECK(picture.samples == room && picture.cols == kCols && room[kCols] == 77);
  CHECK(marovia_measure(&image, &back, NULL, &measures, NULL) == MAROVIA_OK);
  CHECK(isinf(measures.psnr) && measures.sup_norm == 0);
  room[kStride * 20] ^= 4;
  CHECK(marovia_measure(&image, &back, NULL, &measures, NULL) == MAROVIA_OK);
  CHECK(measures.sup_norm == 4 && fabs(measures.mean_square_error * kRows * kCols - 16) < 1e-3);
  CHECK(marovia_measure(&image, &back, &corner, &measures, NULL) == MAROVIA_OK);
  CHECK(isinf(measures.psnr));
  CHECK(marovia_measure(&image, &back, &outside, &measures, NULL) == MAROVIA_INDEX);
  canvas.cols = kCols - 1;
  CHECK(marovia_decompress_into(file.data, file.size, MAROVIA_AWG, NULL, &canvas, &picture, NULL) ==
        MAROVIA_INVALID_ARGUMENT);
  CHECK(picture.samples == NULL);
  marovia_free(file.data);

  const double rates[] = {2, 0.5};
  double psnr[2];
  CHECK(marovia_curve(&image, NULL, rates, 2, psnr, NULL) == MAROVIA_OK);
  CHECK(psnr[0] > psnr[1] && psnr[1] > 15);
}

static int32_t EndAtThird(void* context, const marovia_pass* pass) {
  int* calls = context;
  return ++*calls == 3 && (pass == NULL || pass->number == 3);
}

/* Of one run, and of a search, whose tries have no reports. */
static void AListenerEndsARun(void) {
  marovia_image image = Picture();
  marovia_compress_options options;
  marovia_decompress_options reading;
  marovia_buffer file;
  marovia_error error;
  int calls = 0;
  marovia_compress_options_init(&options, sizeof options);
  options.listener = EndAtThird;
  options.context = &calls;
  const double targets[] = {0, 40};
  for (int i = 0; i < 2; i++, calls = 0) {
    options.psnr = targets[i];
    CHECK(marovia_compress(&image, &options, &file, &error) == MAROVIA_CANCELLED && calls == 3);
    CHECK(file.data == NULL && error.status == MAROVIA_CANCELLED);
  }
  file = Lossless();
  marovia_picture picture = {.size = sizeof picture};
  marovia_decompress_options_init(&reading, sizeof reading);
  reading.listener = EndAtThird;
  reading.context = &calls;
  CHECK(marovia_decompress(file.data, file.size, MAROVIA_AWG, &reading, &picture, NULL) ==
        MAROVIA_CANCELLED);
  CHECK(picture.samples == NULL && calls == 3);
  marovia_free(file.data);
}

/* A caller that was compiled with another version of the header. */
static void StructsOfAnotherAgeAreTaken(void) {
  struct {
    marovia_compress_options known;
    int64_t later;
  } newer;
  marovia_image image = Picture();
  marovia_buffer file;
  marovia_error error;
  CHECK(marovia_compress_options_init(&newer.known, sizeof newer) == MAROVIA_OK);
  CHECK(newer.known.size == sizeof newer && newer.later == 0);
  CHECK(marovia_compress(&image, &newer.known, &file, &error) == MAROVIA_OK);
  marovia_free(file.data);
  newer.known.size = offsetof(marovia_compress_options, lossless);
  newer.known.lossless = 1; /* behind what such a caller knows of */
  CHECK(marovia_compress(&image, &newer.known, &file, &error) == MAROVIA_OK);
  marovia_free(file.data);
  newer.known.lossless = 0;
  newer.known.size = sizeof newer;
  newer.later = 1;
  CHECK(marovia_compress(&image, &newer.known, &file, &error) == MAROVIA_INVALID_ARGUMENT);
}

/* A header that asks for the largest image, on a machine that has no room for it. */
static void LackOfMemoryIsAStatus(void) {
#if !defined(MAROVIA_SANITIZED)
  const uint8_t file[20] = {0, 0, 0, 1, 11, 0xFF, 0x7F, 0xFF, 0x7F};
  const struct rlimit little = {(rlim_t)256 << 20, RLIM_INFINITY};
  marovia_decompress_options options = {.size = sizeof options, .max_pixels = INT64_MAX};
  marovia_picture back = {.size = sizeof back};
  marovia_error error;
  CHECK(setrlimit(RLIMIT_AS, &little) == 0);
  CHECK(marovia_decompress(file, sizeof file, MAROVIA_AWF, &options, &back, &error) ==
        MAROVIA_NO_MEMORY);
  CHECK(back.samples == NULL && error.message[0] != 0);
#endif
}

int main(void) {
  ImageFilesAreReadAndTellWhatTheyLose();
  LosslessComesBackThroughAStride();
  OptionsReachTheCodec();
  RefusalsSayWhatIsWrong();
  PicturesAreDecodedInPlaceAndMeasured();
  AListenerEndsARun();
  StructsOfAnotherAgeAreTaken();
  LackOfMemoryIsAStatus();
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
