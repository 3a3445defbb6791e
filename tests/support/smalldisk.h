// A file system that is soon full.
#pragma once

#include <string>

namespace TestSupport {

// Mounts a file system of 64 KiB on a folder, and takes it off again when it goes. Whoever is not
// root gets a namespace of his own for it, which the process then stays in.
class SmallDisk
{
public:
    explicit SmallDisk(std::string folder);
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    // False where the system allows neither of the two.
    bool isMounted() const { return m_isMounted; }

private:
    std::string m_folder;
    bool m_isMounted = false;
};

} // namespace TestSupport
