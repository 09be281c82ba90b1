#pragma once

/// The program and its tests are built with AddressSanitizer: slower by far, and in need of descriptors and
/// memory of their own. GCC tells it by a macro, clang by a feature.
#ifdef __SANITIZE_ADDRESS__
inline constexpr bool isSanitized = true;
#elif defined(__has_feature)
inline constexpr bool isSanitized = __has_feature(address_sanitizer);
#else
inline constexpr bool isSanitized = false;
#endif
