// An open file of the system, whose every answer is looked at.
#pragma once

#include <QtGlobal>
#include <cerrno>
#include <string>
#include <utility>

namespace Orv::Core {

// Returns the result of a call of the system. Calls again what a signal has broken off.
template <class Call>
auto uninterrupted(const Call& call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

// Owns the descriptor. On failure errno has the reason.
class Descriptor
{
public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }
    // Hands the descriptor over to the caller.
    int release() { return std::exchange(m_number, -1); }

    // Writes all of the bytes.
    bool write(const char* data, qint64 size) const;
    // Writes all that `source` holds from its begin.
    bool copyFrom(const Descriptor& source) const;
    // Returns when everything that was written is on disk.
    bool sync() const;
    // Returns false if the system reports late that bytes were lost.
    bool close();

private:
    int m_number;
};

// Opens `name` in a folder, or anywhere with AT_FDCWD. The descriptor is closed on failure.
Descriptor openAt(int folder, const std::string& name, int flags, unsigned mode = 0);
// Makes a file of a fresh name, which nobody can foresee, for writing and reading. `name` becomes
// that name, or empty on failure.
Descriptor makeTemporary(int folder, unsigned mode, std::string& name);

} // namespace Orv::Core
