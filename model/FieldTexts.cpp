#include "FieldTexts.h"

#include <functional>
#include <mutex>
#include <unordered_map>

namespace SchemaModel::detail {
namespace {

struct Pool {
    std::mutex lock;
    // By the hash of the pair; equal hashes are told apart by comparing.
    std::unordered_multimap<std::size_t, FieldTexts *> entries;
};

// Never destroyed, so that columns freed by other static objects' destructors
// still find it.
Pool &pool()
{
    static Pool *const instance = new Pool;
    return *instance;
}

std::size_t hashOf(std::string_view type, std::optional<std::string_view> defaultValue)
{
    const std::hash<std::string_view> hash;
    std::size_t value = hash(type) * 31;
    if (defaultValue)
        value ^= hash(*defaultValue) + 0x9e3779b97f4a7c15ULL + (value << 6) + (value >> 2);
    return value;
}

bool holds(const FieldTexts &texts, std::string_view type, std::optional<std::string_view> defaultValue)
{
    if (texts.type != type || texts.defaultValue.has_value() != defaultValue.has_value())
        return false;
    return !defaultValue || *texts.defaultValue == *defaultValue;
}

} // namespace

const FieldTexts *acquireFieldTexts(std::string_view type, std::optional<std::string_view> defaultValue)
{
    const std::size_t hash = hashOf(type, defaultValue);
    Pool &shared = pool();
    const std::lock_guard<std::mutex> guard(shared.lock);
    auto [at, end] = shared.entries.equal_range(hash);
    for (; at != end; ++at) {
        if (holds(*at->second, type, defaultValue)) {
            ++at->second->users;
            return at->second;
        }
    }
    auto *texts = new FieldTexts{std::string(type), std::nullopt, 1};
    if (defaultValue)
        texts->defaultValue = std::string(*defaultValue);
    shared.entries.emplace(hash, texts);
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
    auto [at, end] = shared.entries.equal_range(hashOf(entry->type, entry->defaultValue));
    for (; at != end; ++at) {
        if (at->second == entry) {
            shared.entries.erase(at);
            break;
        }
    }
    delete entry;
}

std::size_t sharedFieldTextsCount()
{
    Pool &shared = pool();
    const std::lock_guard<std::mutex> guard(shared.lock);
    return shared.entries.size();
}

} // namespace SchemaModel::detail
