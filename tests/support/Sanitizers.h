// Whether this is a build under a sanitizer, which takes time, memory and descriptors of its own.
#pragma once

namespace tidewright::test {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool underSanitizer = true;
#else
inline constexpr bool underSanitizer = false;
#endif

} // namespace tidewright::test
