#include <gtest/gtest.h>

#ifdef VL_SANITIZE_ADDRESS
#include <dlfcn.h>

namespace {

/** Keeps the GPU's driver, loader and layer in memory to the end, so that what they leak is
 * reported with names that a suppression can match. A library that is not installed is passed over.
 */
void keepDriversLoaded() {
    for (const char* library :
         {"libvulkan.so.1", "libvulkan_lvp.so", "libVkLayer_khronos_validation.so"})
        dlopen(library, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
}

} // namespace
#endif

int main(int argc, char** argv) {
#ifdef VL_SANITIZE_ADDRESS
    keepDriversLoaded();
#endif
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
