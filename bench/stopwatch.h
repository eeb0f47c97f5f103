#pragma once

#include <ctime>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else // then nothing can be counted, but all the rest be measured
#define CALLGRIND_TOGGLE_COLLECT
#define CALLGRIND_ZERO_STATS
#define CALLGRIND_DUMP_STATS
#endif

/// Tells how much processor time this process uses. Meanwhile callgrind, if this process runs under
/// it, counts instructions.
class Stopwatch
{
public:
    void start()
    {
        m_begin = processorTime();
        CALLGRIND_TOGGLE_COLLECT;
    }

    /// Stops and returns the seconds since it was started, all threads' together.
    double stop() const
    {
        CALLGRIND_TOGGLE_COLLECT;
        return processorTime() - m_begin;
    }

private:
    static double processorTime()
    {
        timespec time{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    }

    double m_begin = 0;
};
