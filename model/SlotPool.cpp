#include "SlotPool.h"

#include <atomic>
#include <cstdint>
#include <new>

#include <sys/mman.h>

#if defined(__SANITIZE_ADDRESS__)
#define SCHEMAMODEL_SLOTS_PER_ALLOCATION 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SCHEMAMODEL_SLOTS_PER_ALLOCATION 1
#endif
#endif

namespace SchemaModel::detail {

namespace {

// Blocks are aligned to their size, so that a slot finds its block's header
// by masking its address.
constexpr std::size_t blockBytes = std::size_t{1} << 20U;
// From a thread's second block on, its pages are made this many bytes at a
// time ahead of the slots cut (see allocateSlot).
constexpr std::size_t populateBytes = std::size_t{256} << 10U;

struct BlockHeader {
    // Slots not yet freed, plus one while a thread still cuts slots from it.
    std::atomic<std::size_t> references{1};
};
constexpr std::size_t headerBytes = (sizeof(BlockHeader) + slotAlignment - 1) / slotAlignment * slotAlignment;

std::atomic<std::size_t> blocksHeld{0};

void dropReference(BlockHeader *block) noexcept
{
    if (block->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        block->~BlockHeader();
        ::munmap(block, blockBytes);
        blocksHeld.fetch_sub(1, std::memory_order_relaxed);
    }
}

BlockHeader *newBlock()
{
    // Twice the room, then what lies outside the aligned block goes back.
    void *mapped = ::mmap(nullptr, 2 * blockBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) {
        throw std::bad_alloc();
    }
    const auto start = reinterpret_cast<std::uintptr_t>(mapped);
    const std::uintptr_t aligned = (start + blockBytes - 1) & ~(blockBytes - 1);
    if (aligned > start) {
        ::munmap(mapped, aligned - start);
    }
    const std::uintptr_t end = start + 2 * blockBytes;
    if (end > aligned + blockBytes) {
        ::munmap(reinterpret_cast<void *>(aligned + blockBytes), end - (aligned + blockBytes));
    }
    blocksHeld.fetch_add(1, std::memory_order_relaxed);
    return new (reinterpret_cast<void *>(aligned)) BlockHeader;
}

// The block a thread cuts its slots from. Plain data, read at every slot
// without the checks a thread-local object with a destructor costs.
struct Cutter {
    BlockHeader *block = nullptr;
    char *next = nullptr;
    char *end = nullptr;
    char *populated = nullptr;  // pages made up to here; end when they are left to the faults
};

thread_local Cutter cutter __attribute__((tls_model("initial-exec")));

void retire(Cutter &own) noexcept
{
    if (own.block != nullptr) {
        dropReference(own.block);
        own = Cutter{};
    }
}

// Gives the thread's block up when the thread ends; armed with the thread's
// first block.
struct Retirement {
    bool armed = false;
    ~Retirement() { retire(cutter); }
};

thread_local Retirement retirement;

} // namespace

void *allocateSlot(std::size_t size)
{
#if defined(SCHEMAMODEL_SLOTS_PER_ALLOCATION)
    return ::operator new(size);
#else
    const std::size_t room = (size + slotAlignment - 1) / slotAlignment * slotAlignment;
    Cutter &own = cutter;
    if (static_cast<std::size_t>(own.end - own.next) < room) {
        if (room > blockBytes - headerBytes) {
            throw std::bad_alloc();
        }
        BlockHeader *block = newBlock();
        const bool first = own.block == nullptr;
        if (first) {
            retirement.armed = true;
        }
        retire(own);
        own.block = block;
        own.next = reinterpret_cast<char *>(block) + headerBytes;
        own.end = reinterpret_cast<char *>(block) + blockBytes;
        // A thread on its second block makes many columns: the block's pages
        // are made a quarter at a time, in one call each, instead of one
        // fault each (a small import keeps to the pages of its first block
        // it touches; a quarter at a time, the last block's untouched pages
        // are not made either).
        own.populated = first ? own.end : reinterpret_cast<char *>(block);
    }
#if defined(MADV_POPULATE_WRITE)
    if (own.next + room > own.populated) {
        // A kernel without it leaves them to the faults.
        ::madvise(own.populated, populateBytes, MADV_POPULATE_WRITE);
        own.populated += populateBytes;
    }
#endif
    void *slot = own.next;
    own.next += room;
    own.block->references.fetch_add(1, std::memory_order_relaxed);
    return slot;
#endif
}

void releaseSlot(void *slot) noexcept
{
#if defined(SCHEMAMODEL_SLOTS_PER_ALLOCATION)
    ::operator delete(slot);
#else
    if (slot != nullptr) {
        dropReference(reinterpret_cast<BlockHeader *>(reinterpret_cast<std::uintptr_t>(slot) & ~(blockBytes - 1)));
    }
#endif
}

std::size_t slotBlockCount() noexcept
{
    return blocksHeld.load(std::memory_order_relaxed);
}

} // namespace SchemaModel::detail
