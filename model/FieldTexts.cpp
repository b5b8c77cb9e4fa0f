#include "FieldTexts.h"

#include <cstdint>
#include <cstring>
#include <mutex>
#include <vector>

namespace SchemaModel::detail {
namespace {

// The pairs by hash in an open-addressing table (linear probing, at most
// half full, removal by shifting the probe run back), under one lock: every
// column of every model looks its pair up here once.
class Pool {
public:
    std::mutex lock;

    FieldTexts *find(std::size_t hash, std::string_view type, std::optional<std::string_view> defaultValue) const
    {
        if (slots_.empty())
            return nullptr;
        for (std::size_t at = hash & mask();; at = (at + 1) & mask()) {
            const Slot &slot = slots_[at];
            if (slot.texts == nullptr)
                return nullptr;
            if (slot.hash == hash && holds(*slot.texts, type, defaultValue))
                return slot.texts;
        }
    }

    void add(std::size_t hash, FieldTexts *texts)
    {
        if ((used_ + 1) * 2 > slots_.size())
            grow();
        place({hash, texts});
        ++used_;
    }

    void remove(std::size_t hash, const FieldTexts *texts)
    {
        std::size_t at = hash & mask();
        while (slots_[at].texts != texts)
            at = (at + 1) & mask();
        // Later slots of the run move back into the hole unless their own
        // probe starts between the hole and where they stand.
        for (std::size_t next = (at + 1) & mask(); slots_[next].texts != nullptr; next = (next + 1) & mask()) {
            const std::size_t home = slots_[next].hash & mask();
            if (((next - home) & mask()) >= ((next - at) & mask())) {
                slots_[at] = slots_[next];
                at = next;
            }
        }
        slots_[at] = Slot{};
        --used_;
    }

    std::size_t size() const { return used_; }

private:
    struct Slot {
        std::size_t hash = 0;
        FieldTexts *texts = nullptr;  // none: an empty slot
    };

    static bool holds(const FieldTexts &texts, std::string_view type, std::optional<std::string_view> defaultValue)
    {
        if (texts.type != type || texts.defaultValue.has_value() != defaultValue.has_value())
            return false;
        return !defaultValue || *texts.defaultValue == *defaultValue;
    }

    std::size_t mask() const { return slots_.size() - 1; }

    void place(Slot slot)
    {
        std::size_t at = slot.hash & mask();
        while (slots_[at].texts != nullptr)
            at = (at + 1) & mask();
        slots_[at] = slot;
    }

    void grow()
    {
        std::vector<Slot> old(slots_.empty() ? 64 : slots_.size() * 2);
        old.swap(slots_);
        for (const Slot &slot : old)
            if (slot.texts != nullptr)
                place(slot);
    }

    std::vector<Slot> slots_;  // a power of two of them, or none
    std::size_t used_ = 0;
};

// Never destroyed, so that columns freed by other static objects' destructors
// still find it.
Pool &pool()
{
    static Pool *const instance = new Pool;
    return *instance;
}

// Eight bytes at a time, each word mixed in by a multiply; the final mix
// spreads the high bits down to the low ones the table uses.
std::uint64_t hashBytes(std::string_view text, std::uint64_t hash)
{
    constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15ULL;
    const char *at = text.data();
    std::size_t left = text.size();
    for (; left >= 8; at += 8, left -= 8) {
        std::uint64_t word;
        std::memcpy(&word, at, 8);
        hash = (hash ^ word) * multiplier;
        hash ^= hash >> 29;
    }
    if (left != 0) {
        std::uint64_t word = 0;
        std::memcpy(&word, at, left);
        hash = (hash ^ word) * multiplier;
        hash ^= hash >> 29;
    }
    return (hash ^ text.size()) * multiplier;
}

std::size_t hashOf(std::string_view type, std::optional<std::string_view> defaultValue)
{
    std::uint64_t hash = hashBytes(type, 0x243F6A8885A308D3ULL);
    if (defaultValue)
        hash = hashBytes(*defaultValue, hash ^ 0x13198A2E03707344ULL);
    return static_cast<std::size_t>(hash ^ (hash >> 32));
}

} // namespace

const FieldTexts *acquireFieldTexts(std::string_view type, std::optional<std::string_view> defaultValue)
{
    const std::size_t hash = hashOf(type, defaultValue);
    Pool &shared = pool();
    const std::lock_guard<std::mutex> guard(shared.lock);
    if (FieldTexts *texts = shared.find(hash, type, defaultValue)) {
        ++texts->users;
        return texts;
    }
    auto *texts = new FieldTexts{std::string(type), std::nullopt, 1};
    if (defaultValue)
        texts->defaultValue = std::string(*defaultValue);
    shared.add(hash, texts);
    return texts;
}

void releaseFieldTexts(const FieldTexts *texts)
{
    if (texts == nullptr)
        return;
    Pool &shared = pool();
    const std::lock_guard<std::mutex> guard(shared.lock);
    auto *entry = const_cast<FieldTexts *>(texts);
    if (--entry->users != 0)
        return;
    shared.remove(hashOf(entry->type, entry->defaultValue), entry);
    delete entry;
}

std::size_t sharedFieldTextsCount()
{
    Pool &shared = pool();
    const std::lock_guard<std::mutex> guard(shared.lock);
    return shared.size();
}

} // namespace SchemaModel::detail
