#pragma once

#include <fstream>
#include <sched.h>
#include <string>
#include <unistd.h>

/// Allows this process to mount disks that are visible to it only. False if the system does not permit that.
inline bool BecomeOwnRoot() {
    if (::geteuid() == 0) return ::unshare(CLONE_NEWNS) == 0;
    const std::string user = std::to_string(::geteuid()), group = std::to_string(::getegid());
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    std::ofstream("/proc/self/setgroups") << "deny";
    return static_cast<bool>((std::ofstream("/proc/self/uid_map") << "0 " << user << " 1").flush()) &&
           static_cast<bool>((std::ofstream("/proc/self/gid_map") << "0 " << group << " 1").flush());
}
