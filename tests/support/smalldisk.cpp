#include "support/smalldisk.h"

#include <array>
#include <fstream>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace TestSupport {

namespace {

bool mountOn(const std::string& folder)
{
    return mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=64k") == 0;
}

// "1000 1000 1": the user keeps his number, and no other one exists.
void mapOnly(const char* file, unsigned number)
{
    std::ofstream(file) << number << ' ' << number << " 1\n";
}

// In its own namespace a process may do everything to files. Tests shall still meet closed folders.
void dropRightsOnFiles()
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> rights{};
    if (syscall(SYS_capget, &header, rights.data()) != 0)
        return;
    rights[0].effective &= ~(1u << CAP_DAC_OVERRIDE | 1u << CAP_DAC_READ_SEARCH);
    syscall(SYS_capset, &header, rights.data());
}

bool enterNamespace()
{
    const unsigned user = geteuid();
    const unsigned group = getegid();
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
        return false;
    std::ofstream("/proc/self/setgroups") << "deny\n";
    mapOnly("/proc/self/uid_map", user);
    mapOnly("/proc/self/gid_map", group);
    dropRightsOnFiles();
    return true;
}

} // namespace

SmallDisk::SmallDisk(std::string folder) : m_folder(std::move(folder))
{
    m_isMounted = mountOn(m_folder) || (geteuid() != 0 && enterNamespace() && mountOn(m_folder));
}

SmallDisk::~SmallDisk()
{
    if (m_isMounted)
        umount2(m_folder.c_str(), MNT_DETACH);
}

} // namespace TestSupport
