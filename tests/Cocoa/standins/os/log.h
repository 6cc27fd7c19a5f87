#pragma once

#import <Foundation/Foundation.h>

// The unified log as the public reference describes it: what the back end uses, and no more.

@protocol OS_os_log <NSObject>
@end

using os_log_t = NSObject<OS_os_log>*;
using os_log_type_t = uint8_t;

enum : os_log_type_t {
    OS_LOG_TYPE_DEFAULT = 0x00,
    OS_LOG_TYPE_INFO = 0x01,
    OS_LOG_TYPE_DEBUG = 0x02,
    OS_LOG_TYPE_ERROR = 0x10,
    OS_LOG_TYPE_FAULT = 0x11,
};

extern "C" {
os_log_t os_log_create(char const* subsystem, char const* category);
os_log_t standinDefaultLog(void);
void standinWrite(os_log_t log, os_log_type_t type, char const* format, id value);
}

#define OS_LOG_DEFAULT standinDefaultLog()
#define os_log_with_type(log, type, format, value) standinWrite((log), (type), "" format, (value))
