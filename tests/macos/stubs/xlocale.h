// The Mac's functions with a locale parameter that libc++ uses and this system's C library lacks.
#pragma once

#include <ctype.h>
#include <locale.h>
#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>

// Macros in this C library, which use the current locale; functions on a Mac, where a null locale
// means the standard one.
#undef isdigit_l
#undef isxdigit_l

#ifdef __cplusplus
extern "C" {
#endif

#define MB_CUR_MAX_L(locale) (___mb_cur_max_l(locale))
int ___mb_cur_max_l(locale_t locale);
struct lconv* localeconv_l(locale_t locale);

wint_t btowc_l(int c, locale_t locale);
int wctob_l(wint_t c, locale_t locale);
size_t mbrlen_l(const char* text, size_t size, mbstate_t* state, locale_t locale);
size_t mbrtowc_l(wchar_t* to, const char* text, size_t size, mbstate_t* state, locale_t locale);
int mbtowc_l(wchar_t* to, const char* text, size_t size, locale_t locale);
size_t mbsnrtowcs_l(wchar_t* to, const char** text, size_t size, size_t room, mbstate_t* state,
                    locale_t locale);
size_t mbsrtowcs_l(wchar_t* to, const char** text, size_t room, mbstate_t* state, locale_t locale);
size_t wcrtomb_l(char* to, wchar_t c, mbstate_t* state, locale_t locale);
size_t wcsnrtombs_l(char* to, const wchar_t** text, size_t size, size_t room, mbstate_t* state,
                    locale_t locale);

int asprintf_l(char** to, locale_t locale, const char* format, ...);
int snprintf_l(char* to, size_t room, locale_t locale, const char* format, ...);
int sscanf_l(const char* text, locale_t locale, const char* format, ...);

#ifdef __cplusplus
}
#endif
