/* A program in plain C: it must find the installed files by itself. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <tintwerk/c.h>

enum { kWidth = 300, kHeight = 200, kStride = 4 * kWidth + 24, kSize = kStride * kHeight };

static int Fail(const char* what) {
  fprintf(stderr, "%s\n", what);
  return 1;
}

static int Count(float position, void* user) {
  (void)position;
  ++*(int*)user;
  return 1;
}

static int Compare(const tintwerk_look* look, const unsigned char* image) {
  int calls = 0, equal;
  tintwerk_prepared* prepared = NULL;
  unsigned char* plain = malloc(kSize);
  unsigned char* again = malloc(kSize);
  tintwerk_error error = TINTWERK_OUT_OF_MEMORY;
  if (plain && again) {
    memcpy(plain, image, kSize);
    memcpy(again, image, kSize);
    error = tintwerk_apply(look->title, plain, kWidth, kHeight, kStride, TINTWERK_RGBA, 0.5, NULL,
                           Count, &calls);
  }
  if (!error) error = tintwerk_prepare(look->name, kWidth, kHeight, NULL, &prepared);
  if (!error)
    error = tintwerk_prepared_apply(prepared, again, kStride, TINTWERK_RGBA, 0.5, NULL, NULL);
  tintwerk_prepared_free(prepared);
  equal = !error && memcmp(plain, again, kSize) == 0 && memcmp(plain, image, kSize) != 0;
  free(plain);
  free(again);
  if (error) return Fail(tintwerk_error_text(error));
  return equal && calls >= 2 ? 0 : Fail(look->name);
}

int main(void) {
  static const char* const kLooks[] = {"Faded memory", "effect_vsco_a2", "Coloured pencil"};
  unsigned char* image = malloc(kSize);
  int failed = 0;
  size_t i;
  if (!image) return Fail("no memory");
  for (i = 0; i < kSize; ++i) image[i] = (unsigned char)(i * 7 + i / kStride);
  if (tintwerk_look_count() < 100 || tintwerk_look_at(tintwerk_look_count()))
    failed = Fail("the list is wrong");
  for (i = 0; i < sizeof kLooks / sizeof *kLooks && !failed; ++i) {
    const tintwerk_look* look = tintwerk_find_look(kLooks[i]);
    failed = look && look->category->title[0] ? Compare(look, image) : Fail(kLooks[i]);
  }
  free(image);
  return failed;
}
