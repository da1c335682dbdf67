// What the macOS sources use of the unified log, so that tools/check-macos can compile them without
// an SDK. Written from the public documentation, and nothing but declarations: `os_log_with_type`
// is a macro there and a function here, whose format string the compiler checks all the same.
#pragma once

#include <os/object.h>
#include <stdint.h>

OS_OBJECT_DECL(os_log);

typedef uint8_t os_log_type_t;

enum : os_log_type_t {
    OS_LOG_TYPE_DEFAULT = 0x00,
    OS_LOG_TYPE_INFO = 0x01,
    OS_LOG_TYPE_DEBUG = 0x02,
    OS_LOG_TYPE_ERROR = 0x10,
};

extern "C" os_log_t os_log_create(const char* subsystem, const char* category);

extern "C" void os_log_with_type(os_log_t log, os_log_type_t type, const char* format, ...)
    __attribute__((format(os_log, 3, 4)));
