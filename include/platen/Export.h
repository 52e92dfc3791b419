// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The export macro of the shared library. Everything that does not carry it stays hidden.

#if defined(PLATEN_STATIC)
#define PLATEN_EXPORT
#else
#define PLATEN_EXPORT __attribute__((visibility("default")))
#endif
