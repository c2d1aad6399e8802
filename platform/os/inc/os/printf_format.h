// OS_PRINTF_FORMAT(text, first) lets the compiler hold a function's arguments, from number `first` on,
// against its printf format, number `text`, where it can; first is 0 for a va_list.
#pragma once

#if defined(__MINGW32__)
// Else the compiler expects the formats of the system's own C library, which knows no %zu.
#define OS_PRINTF_FORMAT(text, first) __attribute__((format(gnu_printf, text, first)))
#elif defined(__GNUC__)
#define OS_PRINTF_FORMAT(text, first) __attribute__((format(printf, text, first)))
#else
#define OS_PRINTF_FORMAT(text, first)
#endif
