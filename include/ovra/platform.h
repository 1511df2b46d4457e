// SPDX-License-Identifier: MIT
// Linkage and calling convention of the exported functions.
#ifndef OVRA_PLATFORM_H
#define OVRA_PLATFORM_H

// These must be macros: they stand where the language takes only compiler keywords.
//
// OVRA_CALL  calling convention: __stdcall on 32-bit Windows, the platform's default elsewhere.
// OVRA_API   linkage: imported from the shared library, or plain where OVRA_STATIC is defined by a
//            program that links the library statically. The library itself exports by list, not by
//            attribute; OVRA_BUILDING is defined while it is compiled.
// OVRA_CONSTEXPR  constexpr where the language has it for functions of several statements.
#if defined(_WIN32) && !defined(_WIN64)
#define OVRA_CALL __stdcall
#else
#define OVRA_CALL
#endif

#if defined(OVRA_BUILDING) || defined(OVRA_STATIC)
#if defined(__GNUC__) && !defined(_WIN32)
#define OVRA_API __attribute__((visibility("default")))
#else
#define OVRA_API
#endif
#elif defined(_WIN32)
#define OVRA_API __declspec(dllimport)
#else
#define OVRA_API
#endif

#if defined(__cplusplus) && __cplusplus >= 201402L
#define OVRA_CONSTEXPR constexpr
#else
#define OVRA_CONSTEXPR
#endif

#endif  // OVRA_PLATFORM_H
