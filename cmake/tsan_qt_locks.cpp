// Tells the thread sanitizer of the locks of a Qt library that was built without it: linked into
// every program of the tsan preset, these stand before Qt's own functions and call them.

#include <dlfcn.h>

extern "C" {

void __tsan_acquire(void* address);
void __tsan_release(void* address);

// QMutex::lock()
void _ZN6QMutex4lockEv(void* mutex)
{
    static const auto lock =
        reinterpret_cast<void (*)(void*)>(dlsym(RTLD_NEXT, "_ZN6QMutex4lockEv"));
    lock(mutex);
    __tsan_acquire(mutex);
}

// QMutex::tryLock(int)
bool _ZN6QMutex7tryLockEi(void* mutex, int timeout)
{
    static const auto tryLock =
        reinterpret_cast<bool (*)(void*, int)>(dlsym(RTLD_NEXT, "_ZN6QMutex7tryLockEi"));
    const bool locked = tryLock(mutex, timeout);
    if (locked)
        __tsan_acquire(mutex);
    return locked;
}

// QMutex::unlock()
void _ZN6QMutex6unlockEv(void* mutex)
{
    static const auto unlock =
        reinterpret_cast<void (*)(void*)>(dlsym(RTLD_NEXT, "_ZN6QMutex6unlockEv"));
    __tsan_release(mutex);
    unlock(mutex);
}

// QSemaphore::acquire(int)
void _ZN10QSemaphore7acquireEi(void* semaphore, int count)
{
    static const auto acquire =
        reinterpret_cast<void (*)(void*, int)>(dlsym(RTLD_NEXT, "_ZN10QSemaphore7acquireEi"));
    acquire(semaphore, count);
    __tsan_acquire(semaphore);
}

// QSemaphore::release(int)
void _ZN10QSemaphore7releaseEi(void* semaphore, int count)
{
    static const auto release =
        reinterpret_cast<void (*)(void*, int)>(dlsym(RTLD_NEXT, "_ZN10QSemaphore7releaseEi"));
    __tsan_release(semaphore);
    release(semaphore, count);
}

} // extern "C"
