/*
 * webmgmt: what every public header shares: the export and attribute macros, the static
 * assertion that works in C11 and C++, and the C-linkage brackets.
 *
 * Every function has C linkage; every record is a plain struct built from fixed-width
 * types so that its layout is the same on the 32-bit ARM device and on x86-64 hosts. Each
 * header of include/webmgmt/ compiles on its own as C11 and as C++.
 *
 * Buffers: where a function writes into a caller's buffer without a size argument, the
 * comment beside it gives the size the caller must provide.
 */
#ifndef WEBMGMT_COMMON_H
#define WEBMGMT_COMMON_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define WEBMGMT_API __attribute__((visibility("default")))
#define WEBMGMT_NORETURN __attribute__((noreturn))
#define WEBMGMT_PRINTF(f, a) __attribute__((format(printf, f, a)))
#else
#define WEBMGMT_API
#define WEBMGMT_NORETURN
#define WEBMGMT_PRINTF(f, a)
#endif

#ifdef __cplusplus
#define WEBMGMT_STATIC_ASSERT(c, m) static_assert(c, m)
#define WEBMGMT_BEGIN_DECLS extern "C" {
#define WEBMGMT_END_DECLS }
#else
#define WEBMGMT_STATIC_ASSERT(c, m) _Static_assert(c, m)
#define WEBMGMT_BEGIN_DECLS
#define WEBMGMT_END_DECLS
#endif

/* Pointer-holding records differ between the 32-bit device and 64-bit hosts only by their
 * pointers; their sizes are asserted for both data models. */
#define WEBMGMT_ILP32 (UINTPTR_MAX == 0xffffffffu)

#endif /* WEBMGMT_COMMON_H */
