// Loaded into programs before all else: they see as many processors as they are told.
// SPDX-License-Identifier: MIT

#include <cstdlib>

#include <dlfcn.h>
#include <sched.h>
#include <unistd.h>

namespace {

int Told()
{
    const char* const text = std::getenv("GANTREL_TEST_PROCESSORS");
    return text ? std::atoi(text) : 0;
}

} // namespace

extern "C" int sched_getaffinity(pid_t process, size_t size, cpu_set_t* set) noexcept
{
    using Call = int (*)(pid_t, size_t, cpu_set_t*);
    static const Call real = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "sched_getaffinity"));
    if (Told() == 0)
        return real(process, size, set);
    CPU_ZERO_S(size, set);
    for (int i = 0; i < Told(); ++i)
        CPU_SET_S(static_cast<size_t>(i), size, set);
    return 0;
}

extern "C" long sysconf(int name) noexcept
{
    using Call = long (*)(int);
    static const Call real = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "sysconf"));
    const bool isAsked = name == _SC_NPROCESSORS_ONLN || name == _SC_NPROCESSORS_CONF;
    return isAsked && Told() > 0 ? Told() : real(name);
}
