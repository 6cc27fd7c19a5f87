#pragma once

// What newer systems have. A test build defines these itself, to be either system.
#ifndef FCP_IS_MACOS_13_3
#define FCP_IS_MACOS_13_3 @available(macOS 13.3, *)
#endif
