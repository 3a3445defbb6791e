#include "core/descriptor.h"

#include <QRandomGenerator>
#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace Orv::Core {

namespace {

constexpr std::size_t CopyBlock = std::size_t{64} * 1024;
constexpr int MaximumAttempts = 100; // to find a name that is not taken

std::string freshName()
{
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), ".orv-%016llx",
                  static_cast<unsigned long long>(QRandomGenerator::system()->generate64()));
    return name.data();
}

} // namespace

bool Descriptor::write(const char* data, qint64 size) const
{
    while (size > 0) {
        const auto count =
            uninterrupted([&] { return ::write(m_number, data, static_cast<std::size_t>(size)); });
        if (count <= 0)
            return false;
        data += count;
        size -= count;
    }
    return true;
}

bool Descriptor::copyFrom(const Descriptor& source) const
{
    std::array<char, CopyBlock> block;
    if (lseek(source.m_number, 0, SEEK_SET) != 0)
        return false;
    for (;;) {
        const auto count =
            uninterrupted([&] { return ::read(source.m_number, block.data(), block.size()); });
        if (count <= 0)
            return count == 0;
        if (!write(block.data(), count))
            return false;
    }
}

bool Descriptor::sync() const
{
    return uninterrupted([this] { return fsync(m_number); }) == 0;
}

bool Descriptor::close()
{
    const int number = std::exchange(m_number, -1);
    // The descriptor is gone even where a signal breaks the call off.
    return number < 0 || ::close(number) == 0 || errno == EINTR;
}

Descriptor openAt(int folder, const std::string& name, int flags, unsigned mode)
{
    return Descriptor(
        uninterrupted([&] { return openat(folder, name.c_str(), flags | O_CLOEXEC, mode); }));
}

Descriptor makeTemporary(int folder, unsigned mode, std::string& name)
{
    for (int i = 0; i < MaximumAttempts; ++i) {
        name = freshName();
        Descriptor file = openAt(folder, name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
        if (file.isOpen() || errno != EEXIST) {
            if (!file.isOpen())
                name.clear();
            return file;
        }
    }
    name.clear();
    return Descriptor();
}

} // namespace Orv::Core
