/* The looks of Tintwerk for C, and for whatever calls C.
 *
 * All functions may be called from any thread at any time. None throws, prints or exits. Strings are
 * UTF-8. Those and the records that are returned belong to the library and stay while it is loaded.
 * Later versions may add functions, looks, errors, and members at the end of records; nothing that is
 * here changes or goes. Numbers of looks may change from version to version, names do not.
 */
#ifndef TINTWERK_C_H
#define TINTWERK_C_H

#include <stddef.h>

#if defined(_WIN32)
#if defined(TINTWERK_BUILDING)
#define TINTWERK_C_API __declspec(dllexport)
#else
#define TINTWERK_C_API __declspec(dllimport)
#endif
#else
#define TINTWERK_C_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef enum tintwerk_error {
  TINTWERK_OK = 0,
  TINTWERK_STOPPED = 1,       /* the progress function asked for it */
  TINTWERK_NULL = 2,          /* a pointer that is needed is null */
  TINTWERK_BAD_SIZE = 3,      /* a side below 1, or more pixels than an int counts */
  TINTWERK_BAD_STRIDE = 4,    /* shorter than a row, or the buffer would not fit into memory */
  TINTWERK_BAD_FORMAT = 5,    /* none of tintwerk_format */
  TINTWERK_BAD_STRENGTH = 6,  /* not a number, or outside 0..1 */
  TINTWERK_UNKNOWN_LOOK = 7,  /* no look has that name or title */
  TINTWERK_NO_RESOURCES = 8,  /* the folder does not exist or holds no folder Effects */
  TINTWERK_MISSING_FILE = 9,  /* a support file of the look is missing or unreadable */
  TINTWERK_OUT_OF_MEMORY = 10 /* also: the picture is too large for this look */
} tintwerk_error;

/* One line that says what an error means; for a number that is none, that it is unknown. */
TINTWERK_C_API const char* tintwerk_error_text(int error);

/* ---- The list ---- */

typedef struct tintwerk_category {
  const char* id;    /* "BlackAndWhite" */
  const char* title; /* "Black and white" */
} tintwerk_category;

typedef struct tintwerk_look {
  const char* name;  /* "Effect_HuiYi" */
  const char* title; /* "Faded memory" */
  const tintwerk_category* category;
  const char* description;  /* one line */
  int draws_random_numbers; /* not 0 if results differ from call to call */
} tintwerk_look;

TINTWERK_C_API int tintwerk_look_count(void);
/* Null for a number outside 0..count - 1. */
TINTWERK_C_API const tintwerk_look* tintwerk_look_at(int number);
/* Finds a look by its name or title. Only letters and digits count, in either case, and "Effect_" may
 * be left out. Null if there is none. */
TINTWERK_C_API const tintwerk_look* tintwerk_find_look(const char* name_or_title);

/* The categories, in the order of a menu. */
TINTWERK_C_API int tintwerk_category_count(void);
TINTWERK_C_API const tintwerk_category* tintwerk_category_at(int number);

/* ---- Looks on pixels ---- */

/* The order of a pixel's four bytes. Alpha is straight. */
typedef enum tintwerk_format { TINTWERK_BGRA = 0, TINTWERK_RGBA = 1 } tintwerk_format;

/* Called while a look works, always on the thread that called the library.
 * position  0..1, never falling; 0 once before the work and 1 once after it; how often in between
 *           depends on the look, and not at all is common
 * user      the pointer that was handed in
 * Returns not 0 to go on and 0 to stop. A stop leaves the buffer as it was. At position 1 the work is
 * done, and the answer no longer counts. */
typedef int (*tintwerk_progress)(float position, void* user);

/* Gives a picture a look, in place. It uses all threads that the OpenMP runtime gives the caller.
 * look       name or title, as for tintwerk_find_look
 * pixels     rows top-down, 4 bytes a pixel. Bytes between rows are not touched
 * width, height  in pixels, above 0
 * stride     bytes from a row to the next, at least 4 x width
 * format     TINTWERK_BGRA or TINTWERK_RGBA
 * strength   0 leaves the picture as it is, 1 gives the look; between, every colour byte is
 *            look x strength + picture x (1 - strength), truncated, and alpha stays
 * resources  the folder that holds Effects, of which every file of the look must be there. Null: the
 *            folder that is installed with the library
 * progress   may be null, and so may user
 * Whatever is not TINTWERK_OK leaves the buffer as it was. Nothing is kept between calls. */
TINTWERK_C_API tintwerk_error tintwerk_apply(const char* look, void* pixels, int width, int height,
                                             ptrdiff_t stride, int format, double strength,
                                             const char* resources, tintwerk_progress progress,
                                             void* user);

/* A look for many pictures of one size: its support files are read, decoded and scaled once. It takes
 * up to 4 bytes of memory a pixel for each picture that the look lays over the image. */
typedef struct tintwerk_prepared tintwerk_prepared;

/* Prepares a look. This takes about as long as one tintwerk_apply.
 * prepared  receives the look, null after an error */
TINTWERK_C_API tintwerk_error tintwerk_prepare(const char* look, int width, int height,
                                               const char* resources, tintwerk_prepared** prepared);

/* Gives a picture of the prepared size the look: the bytes of tintwerk_apply. Several threads may do
 * so side by side. Looks that draw random numbers draw the same for every picture, as long as the
 * number of threads stays the same, so that the frames of a film are alike. */
TINTWERK_C_API tintwerk_error tintwerk_prepared_apply(const tintwerk_prepared* prepared,
                                                      void* pixels, ptrdiff_t stride, int format,
                                                      double strength, tintwerk_progress progress,
                                                      void* user);

/* Null is allowed. No thread may still be applying it. */
TINTWERK_C_API void tintwerk_prepared_free(tintwerk_prepared* prepared);

#ifdef __cplusplus
}
#endif

#endif
