// One object of a class for the whole process.
#pragma once

namespace Orv::Core {

// Base of T, which makes its constructor private and Singleton<T> its friend.
template <class T>
class Singleton
{
public:
    Singleton(const Singleton&) = delete;
    Singleton& operator=(const Singleton&) = delete;

    // Returns the object, and makes it at the first call. It is never destroyed. So it can be used
    // until the process ends, whatever the order in which other static objects are destroyed. May
    // be called on any thread.
    static T& instance()
    {
        static T* const object = new T;
        return *object;
    }

protected:
    Singleton() = default;
    ~Singleton() = default;
};

} // namespace Orv::Core
