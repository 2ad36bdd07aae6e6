#include "Tools/rtaudit/CBusyCores.h"

namespace tsm {

CBusyCores::CBusyCores(int count)
{
    for (int i = 0; i < count; ++i)
        threads.emplace_back([this] {
            while (!isEnding.load(std::memory_order_relaxed)) {
            }
        });
}

CBusyCores::~CBusyCores()
{
    isEnding = true;
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace tsm
