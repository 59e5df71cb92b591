#include "store/sqlitememory.h"

#include <sqlite3.h>

#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <vector>

namespace slipbook::store {

namespace {

// Size classes: steps of 16 bytes up to 512, then four steps to each doubling up to 64 KiB.
// Larger blocks go straight to the system.
constexpr std::size_t kSmallStep = 16;
constexpr std::size_t kSmallLimit = 512;
constexpr std::size_t kLargeLimit = 65536;
constexpr int kSmallClasses = kSmallLimit / kSmallStep;                            // 32
constexpr int kClasses = kSmallClasses + 4 * (std::countr_zero(kLargeLimit) - 9);  // 60
// What a class keeps at most, so that a burst of frees is not held for ever.
constexpr std::size_t kKeptBytesPerClass = 256 * 1024;

constexpr int kNoClass = -1;

// In front of every block: its usable size and its class. 16 bytes keep the block aligned as
// the system's own are.
struct Header {
    std::size_t size;
    std::ptrdiff_t sizeClass;
};
static_assert(sizeof(Header) == 16);

std::size_t RoundUp(std::size_t n) {
    if (n <= kSmallLimit) {
        return n == 0 ? kSmallStep : (n + kSmallStep - 1) / kSmallStep * kSmallStep;
    }
    if (n > kLargeLimit) {
        return (n + 7) / 8 * 8;
    }
    const std::size_t power = std::bit_floor(n - 1);
    const std::size_t step = power / 4;
    return (n + step - 1) / step * step;
}

int ClassOf(std::size_t rounded) {
    if (rounded <= kSmallLimit) {
        return static_cast<int>(rounded / kSmallStep) - 1;
    }
    if (rounded > kLargeLimit) {
        return kNoClass;
    }
    const std::size_t power = std::bit_floor(rounded - 1);
    const std::size_t step = power / 4;
    const int doubling = std::countr_zero(power) - 9;
    return kSmallClasses + 4 * doubling + static_cast<int>((rounded - power) / step) - 1;
}

struct Pool {
    std::mutex mutex;
    std::array<std::vector<Header*>, kClasses> kept;
};

// Never destroyed: SQLite may free blocks while the process ends.
Pool& ThePool() {
    static Pool* pool = new Pool;
    return *pool;
}

Header* HeaderOf(void* block) {
    return static_cast<Header*>(block) - 1;
}

void* PoolMalloc(int n) {
    if (n <= 0) {
        return nullptr;
    }
    const std::size_t size = RoundUp(static_cast<std::size_t>(n));
    const int sizeClass = ClassOf(size);
    if (sizeClass != kNoClass) {
        Pool& pool = ThePool();
        const std::lock_guard lock(pool.mutex);
        auto& kept = pool.kept[sizeClass];
        if (!kept.empty()) {
            Header* h = kept.back();
            kept.pop_back();
            return h + 1;
        }
    }
    auto* h = static_cast<Header*>(std::malloc(sizeof(Header) + size));
    if (h == nullptr) {
        return nullptr;
    }
    h->size = size;
    h->sizeClass = sizeClass;
    return h + 1;
}

void PoolFree(void* block) {
    if (block == nullptr) {
        return;
    }
    Header* h = HeaderOf(block);
    if (h->sizeClass != kNoClass) {
        Pool& pool = ThePool();
        const std::lock_guard lock(pool.mutex);
        auto& kept = pool.kept[h->sizeClass];
        if (kept.size() * h->size < kKeptBytesPerClass || kept.size() < 4) {
            kept.push_back(h);
            return;
        }
    }
    std::free(h);
}

void* PoolRealloc(void* block, int n) {
    if (block == nullptr) {
        return PoolMalloc(n);
    }
    if (n <= 0) {
        PoolFree(block);
        return nullptr;
    }
    Header* h = HeaderOf(block);
    const std::size_t size = RoundUp(static_cast<std::size_t>(n));
    if (size == h->size) {
        return block;
    }
    void* moved = PoolMalloc(n);
    if (moved == nullptr) {
        return nullptr;
    }
    std::memcpy(moved, block, std::min(size, h->size));
    PoolFree(block);
    return moved;
}

int PoolSize(void* block) {
    return block == nullptr ? 0 : static_cast<int>(HeaderOf(block)->size);
}

int PoolRoundup(int n) {
    return static_cast<int>(RoundUp(static_cast<std::size_t>(n)));
}

int PoolInit(void*) {
    return SQLITE_OK;
}

void PoolShutdown(void*) {}

}  // namespace

void UseSqliteMemoryPool() {
    static std::once_flag once;
    std::call_once(once, [] {
        static const sqlite3_mem_methods methods = {PoolMalloc,  PoolFree, PoolRealloc,  PoolSize,
                                                    PoolRoundup, PoolInit, PoolShutdown, nullptr};
        // Refused, and harmless, when SQLite is already in use.
        sqlite3_config(SQLITE_CONFIG_MALLOC, &methods);
        // Nobody reads the engine's memory statistics; keeping them asks every block its size
        // under a global lock.
        sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    });
}

}  // namespace slipbook::store
