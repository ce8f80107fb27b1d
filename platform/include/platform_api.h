/* What every header of the platform boundary shares. The headers compile as C11 and C++20. */
#pragma once

#define PLATFORM_API __attribute__((visibility("default")))

#ifdef __cplusplus
#define PLATFORM_BEGIN_DECLS extern "C" {
#define PLATFORM_END_DECLS }
#else
#define PLATFORM_BEGIN_DECLS
#define PLATFORM_END_DECLS
#endif
