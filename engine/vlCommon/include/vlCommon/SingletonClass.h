#pragma once
#include <cassert>
#include <memory>

namespace vlCommon {

/** Gives T one instance, created on first use. The order of the first uses is the start-up's
 *  business; destroyInstance() lets shutdown and tests end a life explicitly and in order.
 *  Creation and destruction belong to one thread; they are not synchronised. */
template <class T> class SingletonClass {
public:
    SingletonClass(const SingletonClass&) = delete;
    SingletonClass& operator=(const SingletonClass&) = delete;

    static T& getInstance() {
        if (!slot()) slot() = std::make_unique<T>();
        return *slot();
    }
    static bool hasInstance() { return slot() != nullptr; }
    static void destroyInstance() { slot().reset(); }

protected:
    SingletonClass() = default;
    ~SingletonClass() = default;

private:
    static std::unique_ptr<T>& slot() {
        static std::unique_ptr<T> instance;
        return instance;
    }
};

/** Gives T at most one instance, made and ended by its owner: getInstance() is null before and
 * after. For objects that exist only while the engine runs. */
template <class T> class MaybeSingletonClass {
public:
    MaybeSingletonClass(const MaybeSingletonClass&) = delete;
    MaybeSingletonClass& operator=(const MaybeSingletonClass&) = delete;

    static T* getInstance() { return slot(); }

protected:
    MaybeSingletonClass() {
        assert(slot() == nullptr);
        slot() = static_cast<T*>(this);
    }
    ~MaybeSingletonClass() { slot() = nullptr; }

private:
    static T*& slot() {
        static T* instance = nullptr;
        return instance;
    }
};

} // namespace vlCommon
