#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wsign-conversion"
#define VOLK_IMPLEMENTATION
#define VK_USE_PLATFORM_XCB_KHR
#include <volk.h>
#pragma GCC diagnostic pop
