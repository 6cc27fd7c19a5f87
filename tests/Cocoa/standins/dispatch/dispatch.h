#pragma once

#include <stdint.h>

// The main queue as the public reference describes it: what the back end uses, and no more.

#ifdef __cplusplus
extern "C" {
#endif

typedef struct dispatch_queue_s* dispatch_queue_t;
typedef uint64_t dispatch_time_t;
typedef void (*dispatch_function_t)(void* context);

#define NSEC_PER_SEC 1000000000ULL
#define DISPATCH_TIME_NOW 0ULL
#define DISPATCH_TIME_FOREVER (~0ULL)

dispatch_queue_t dispatch_get_main_queue(void);
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta);
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);
void dispatch_after_f(dispatch_time_t when, dispatch_queue_t target, void* context, dispatch_function_t work);

#ifdef __cplusplus
}
#endif
