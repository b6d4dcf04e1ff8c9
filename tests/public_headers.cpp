// Whoever uses the engine meets none of the libraries beneath it: no public header may bring one
// in.
#include "all_public_headers.h"

#if defined(VK_VERSION_1_0) || defined(VULKAN_H_) || defined(VOLK_H_) || defined(VK_NO_PROTOTYPES)
#error "a public header shows Vulkan"
#endif
#if defined(QT_VERSION) || defined(QT_CORE_LIB) || defined(QT_VERSION_STR)
#error "a public header shows Qt"
#endif
#if defined(FMT_VERSION) || defined(GLM_VERSION) || defined(NLOHMANN_JSON_VERSION_MAJOR) ||        \
        defined(LUA_VERSION) || defined(_X11_XLIB_H_) || defined(__XCB_H__)
#error "a public header shows a third-party library"
#endif
