// What the macOS sources use of the CoreServices framework and of CoreFoundation beneath it, so
// that tools/check-macos can compile them without an SDK. Written from the public documentation,
// and nothing but declarations: what is deprecated for macOS 13 is left out on purpose, so that its
// use does not compile.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFURL* CFURLRef;
typedef struct __MDItem* MDItemRef;

extern const CFAllocatorRef _Nullable kCFAllocatorDefault;
void CFRelease(CFTypeRef _Nonnull object);

extern const CFStringRef _Nonnull kMDItemDateAdded;
extern const CFStringRef _Nonnull kMDItemLastUsedDate;
MDItemRef _Nullable MDItemCreateWithURL(CFAllocatorRef _Nullable allocator, CFURLRef _Nonnull url);
CFTypeRef _Nullable MDItemCopyAttribute(MDItemRef _Nonnull item, CFStringRef _Nonnull name);

#ifdef __cplusplus
}
#endif
