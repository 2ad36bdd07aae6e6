#include "Platform/CCriticalSection.h"

#include <benchmark/benchmark.h>

#include <pthread.h>

namespace tsm {

namespace {

struct COurs {
    void lock() { section.enter(); }
    void unlock() { section.leave(); }
    CCriticalSection section{50};
};

/// The C library's recursive mutex, with or without inheritance.
template <int protocol>
class CSystemMutex {
public:
    CSystemMutex()
    {
        pthread_mutexattr_t attributes;
        pthread_mutexattr_init(&attributes);
        pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
        pthread_mutexattr_setprotocol(&attributes, protocol);
        pthread_mutex_init(&mutex, &attributes);
        pthread_mutexattr_destroy(&attributes);
    }
    ~CSystemMutex() { pthread_mutex_destroy(&mutex); }
    CSystemMutex(const CSystemMutex&) = delete;
    CSystemMutex& operator=(const CSystemMutex&) = delete;

    void lock() { pthread_mutex_lock(&mutex); }
    void unlock() { pthread_mutex_unlock(&mutex); }

private:
    pthread_mutex_t mutex;
};
using CPlainMutex = CSystemMutex<PTHREAD_PRIO_NONE>;
using CInheritingMutex = CSystemMutex<PTHREAD_PRIO_INHERIT>;

// A hand-over: a few stores under the lock. With one thread nobody ever waits.
template <class Lock>
void handOver(benchmark::State& state)
{
    static Lock lock;
    static std::int64_t shared[4];
    for (auto _ : state) {
        lock.lock();
        for (std::int64_t& word : shared)
            benchmark::DoNotOptimize(++word);
        lock.unlock();
    }
}

BENCHMARK(handOver<COurs>)->Threads(1)->Threads(2)->Threads(4);
BENCHMARK(handOver<CPlainMutex>)->Threads(1)->Threads(2)->Threads(4);
BENCHMARK(handOver<CInheritingMutex>)->Threads(1)->Threads(2)->Threads(4);

} // namespace

} // namespace tsm
