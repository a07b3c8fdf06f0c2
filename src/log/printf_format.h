// Lets the compiler check the arguments of our printf-style functions.
#pragma once

/// `text` and `first` are the 1-based positions of the format and of the first argument that it prints; 0
/// for `first` when the arguments come as a va_list. gnu_printf is what g++ holds C99's printf to everywhere.
#if defined(__clang__)
#define QLX_PRINTF(text, first) __attribute__((format(printf, text, first)))
#elif defined(__GNUC__)
#define QLX_PRINTF(text, first) __attribute__((format(gnu_printf, text, first)))
#else
#define QLX_PRINTF(text, first)
#endif
