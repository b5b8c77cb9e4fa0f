#pragma once

// Name look-up and renaming helpers shared by the model classes.

#include <SchemaModel/Names.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class SQLObject;

namespace SchemaModel::detail {

/// The case-folded form of a name: two names are equal ignoring case exactly
/// when their folded forms are equal.
std::string foldedName(std::string_view name);

/// Whether `name` folds to `folded`; compares in place for ASCII names.
bool foldsTo(std::string_view name, std::string_view folded);

/// A folded name and its hash, made once per look-up.
struct FoldedKey {
    static FoldedKey ofName(std::string_view name) { return ofFolded(foldedName(name)); }
    static FoldedKey ofFolded(std::string folded);

    std::string folded;
    std::uint32_t hash = 0;
};

/// Ties an object to the rename count of the index that holds it.
struct NameIndexAccess {
    static void markIndexed(SQLObject &object, std::uint64_t *ownerRenames);
};

/// The items of one owner's list by case-folded name, for look-ups and
/// renaming in constant time per name tried. It follows the list as items
/// are added through it and rebuilds itself when one of its items has been
/// renamed since (renames after adding are rare). Items point at it, so it
/// never moves.
///
/// It keeps no names: an open-addressing table holds, for each folded name,
/// the list position of its first item and the name's hash (8 bytes a slot,
/// at most three quarters of the slots in use), and compares candidates by
/// folding the items' own names. The rare later items of a name already held
/// are listed apart, by the position of the first.
template <typename T>
class NameIndex {
public:
    using Items = std::vector<std::unique_ptr<T>>;

    NameIndex() = default;
    NameIndex(const NameIndex &) = delete;
    NameIndex &operator=(const NameIndex &) = delete;

    /// Records an item just appended to `items`.
    void added(const Items &items, T &item)
    {
        NameIndexAccess::markIndexed(item, &renames_);
        if (upToDate(items.size() - 1))
            insert(items, items.size() - 1);
        else
            rebuild(items);
    }

    /// Follows a change of the items' order.
    void reordered(const Items &items) { rebuild(items); }

    /// The first item named exactly `name`, else the first whose name
    /// matches case-insensitively. Unnamed items never match.
    T *find(const Items &items, std::string_view name)
    {
        if (name.empty())
            return nullptr;
        refresh(items);
        const Slot *slot = slotOf(items, FoldedKey::ofName(name));
        if (slot == nullptr)
            return nullptr;
        T *first = items[slot->position].get();
        if (first->getName() == name)
            return first;
        if (const std::vector<std::uint32_t> *later = laterItems(slot->position))
            for (std::uint32_t position : *later)
                if (items[position]->getName() == name)
                    return items[position].get();
        return first;
    }

    /// Gives `object` a name not yet used in `items` (case-insensitively):
    /// its own name if free, otherwise the first free one of name_1,
    /// name_2, ... Returns whether it was renamed.
    template <typename U>
    bool makeUnique(const Items &items, U &object)
    {
        if (!object.hasName())
            return false;
        refresh(items);
        FoldedKey key = FoldedKey::ofName(object.getName());
        if (slotOf(items, key) == nullptr)
            return false;
        const std::string base = object.getName();
        const std::string foldedBase = std::move(key.folded);
        // Every suffix below the hint was taken when it was last tried, and
        // names only become free through a rename, which resets the hints.
        if (!nextSuffix_)
            nextSuffix_ = std::make_unique<std::unordered_map<std::string, std::size_t>>();
        std::size_t &next = (*nextSuffix_)[foldedBase];
        for (std::size_t suffix = next == 0 ? 1 : next;; ++suffix) {
            const std::string tail = "_" + std::to_string(suffix);
            // Folding maps each character on its own, so the folded form of
            // base + tail is the folded base + tail.
            if (slotOf(items, FoldedKey::ofFolded(foldedBase + tail)) == nullptr) {
                next = suffix + 1;
                object.setName(base + tail);
                return true;
            }
        }
    }

private:
    static constexpr std::uint32_t kEmpty = UINT32_MAX;

    struct Slot {
        std::uint32_t position = kEmpty;  // of the first item of the name
        std::uint32_t hash = 0;
    };

    bool upToDate(std::size_t indexedCount) const
    {
        return renamesSeen_ == renames_ && indexed_ == indexedCount;
    }

    void refresh(const Items &items)
    {
        if (!upToDate(items.size()))
            rebuild(items);
    }

    // The slot of the folded name, or nullptr.
    const Slot *slotOf(const Items &items, const FoldedKey &key) const
    {
        if (slots_.empty())
            return nullptr;
        const std::size_t mask = slots_.size() - 1;
        for (std::size_t at = key.hash & mask;; at = (at + 1) & mask) {
            const Slot &slot = slots_[at];
            if (slot.position == kEmpty)
                return nullptr;
            if (slot.hash == key.hash && foldsTo(items[slot.position]->getName(), key.folded))
                return &slot;
        }
    }

    const std::vector<std::uint32_t> *laterItems(std::uint32_t firstPosition) const
    {
        if (!later_)
            return nullptr;
        const auto found = later_->find(firstPosition);
        return found == later_->end() ? nullptr : &found->second;
    }

    void insert(const Items &items, std::size_t position)
    {
        ++indexed_;
        const T &item = *items[position];
        if (!item.hasName())
            return;
        const FoldedKey key = FoldedKey::ofName(item.getName());
        if (const Slot *slot = slotOf(items, key)) {
            if (!later_)
                later_ = std::make_unique<std::unordered_map<std::uint32_t, std::vector<std::uint32_t>>>();
            (*later_)[slot->position].push_back(static_cast<std::uint32_t>(position));
            return;
        }
        if ((used_ + 1) * 4 > slots_.size() * 3)
            grow(slots_.empty() ? 8 : slots_.size() * 2);
        place(Slot{static_cast<std::uint32_t>(position), key.hash});
        ++used_;
    }

    void place(Slot slot)
    {
        const std::size_t mask = slots_.size() - 1;
        std::size_t at = slot.hash & mask;
        while (slots_[at].position != kEmpty)
            at = (at + 1) & mask;
        slots_[at] = slot;
    }

    void grow(std::size_t capacity)
    {
        std::vector<Slot> old(capacity);
        old.swap(slots_);
        for (const Slot &slot : old)
            if (slot.position != kEmpty)
                place(slot);
    }

    void rebuild(const Items &items)
    {
        slots_.clear();
        later_.reset();
        nextSuffix_.reset();
        used_ = 0;
        indexed_ = 0;
        renamesSeen_ = renames_;
        std::size_t capacity = 8;
        while (items.size() * 4 > capacity * 3)
            capacity *= 2;
        if (!items.empty())
            grow(capacity);
        for (std::size_t position = 0; position < items.size(); ++position)
            insert(items, position);
    }

    std::vector<Slot> slots_;  // a power of two of them, or none
    std::unique_ptr<std::unordered_map<std::uint32_t, std::vector<std::uint32_t>>> later_;
    std::unique_ptr<std::unordered_map<std::string, std::size_t>> nextSuffix_;
    std::uint64_t renames_ = 0;      // bumped by items renamed after adding
    std::uint64_t renamesSeen_ = 0;  // as of the last rebuild
    std::size_t indexed_ = 0;        // items followed, named or not
    std::size_t used_ = 0;           // slots in use
};

/// Trimmed text, or nullopt when nothing is left.
inline std::optional<std::string> trimmedOrNone(std::string_view text)
{
    std::string trimmed = trim(text);
    if (trimmed.empty())
        return std::nullopt;
    return trimmed;
}

/// The text as given, or nullopt when it is empty.
inline std::optional<std::string> textOrNone(std::string_view text)
{
    if (text.empty())
        return std::nullopt;
    return std::string(text);
}

} // namespace SchemaModel::detail
