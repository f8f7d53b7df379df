#pragma once

#include <QtGlobal>

#include <sys/resource.h>

/**
 * While it lives, the system gives this process no memory beyond what it has. The heap still gives
 * what it has left, but a test had better take its own before. Not for the builds of a sanitizer,
 * which needs memory for itself.
 */
class NoMemory
{
public:
    NoMemory()
    {
        getrlimit(RLIMIT_AS, &m_limit);
        const rlimit none = {0, m_limit.rlim_max};
        setrlimit(RLIMIT_AS, &none);
    }
    ~NoMemory() { setrlimit(RLIMIT_AS, &m_limit); }
    Q_DISABLE_COPY_MOVE(NoMemory)

private:
    rlimit m_limit;
};
