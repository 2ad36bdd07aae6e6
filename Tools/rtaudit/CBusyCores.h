#pragma once

#include <atomic>
#include <thread>
#include <vector>

namespace tsm {

/// Threads of other programs, so to say, that want a processor each all the time.
class CBusyCores {
public:
    explicit CBusyCores(int count);
    ~CBusyCores();
    CBusyCores(const CBusyCores&) = delete;
    CBusyCores& operator=(const CBusyCores&) = delete;

private:
    std::atomic<bool> isEnding = false;
    std::vector<std::thread> threads;
};

} // namespace tsm
