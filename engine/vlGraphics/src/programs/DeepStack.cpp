#include "programs/DeepStack.h"

#include <pthread.h>

#include <cstddef>

namespace vlGraphics {

namespace {

constexpr std::size_t stackBytes = std::size_t{256} << 20U;

void* runWork(void* work) {
    (*static_cast<const std::function<void()>*>(work))();
    return nullptr;
}

} // namespace

bool runOnDeepStack(const std::function<void()>& work) {
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0) return false;
    pthread_t thread{};
    const bool started =
            pthread_attr_setstacksize(&attributes, stackBytes) == 0 &&
            pthread_create(
                    &thread, &attributes, runWork, const_cast<std::function<void()>*>(&work)) == 0;
    pthread_attr_destroy(&attributes);
    return started && pthread_join(thread, nullptr) == 0;
}

} // namespace vlGraphics
