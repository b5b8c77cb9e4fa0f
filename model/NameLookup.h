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

/// An ASCII letter in lower case; any other byte as it is.
inline char asciiLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

/// foldsTo past its check of the ends.
bool foldsToAfterEnds(std::string_view name, std::string_view folded);

/// Whether `name` folds to `folded`; compares in place for ASCII names.
/// Folding maps each character on its own, so an ASCII character at either
/// end of the name must stand folded at that end: most names of a list
/// differ there, and are told apart inline without a scan.
inline bool foldsTo(std::string_view name, std::string_view folded)
{
    if (!name.empty()) {
        const auto first = static_cast<unsigned char>(name.front());
        const auto last = static_cast<unsigned char>(name.back());
        if (folded.empty() || (first < 0x80 && asciiLower(name.front()) != folded.front()) ||
            (last < 0x80 && asciiLower(name.back()) != folded.back()))
            return false;
    }
    return foldsToAfterEnds(name, folded);
}

/// A folded name, made once per look-up, and its hash, made only where a
/// hashed list asks for it (a short list is searched in place).
struct FoldedKey {
    static FoldedKey ofName(std::string_view name) { return ofFolded(foldedName(name)); }
    static FoldedKey ofFolded(std::string folded) { return FoldedKey{std::move(folded)}; }

    std::uint32_t hash() const;

    std::string folded;
};

/// Ties an object to the rename count of the index that holds it.
struct NameIndexAccess {
    static void markIndexed(SQLObject &object, std::uint64_t *ownerRenames);
};

/// List positions by a 32-bit hash, in the order added: an open-addressing
/// table of (first position, hash) slots, 8 bytes each with at most three
/// quarters of them in use, and the rare later positions of a hash already
/// held listed apart by the first one. It keeps no names; callers compare
/// the names of the positions it gives them.
class PositionsByHash {
public:
    void add(std::uint32_t hash, std::uint32_t position)
    {
        if (const Slot *slot = slotOf(hash)) {
            if (!later_)
                later_ = std::make_unique<std::unordered_map<std::uint32_t, std::vector<std::uint32_t>>>();
            (*later_)[slot->position].push_back(position);
            return;
        }
        if ((used_ + 1) * 4 > slots_.size() * 3)
            grow(slots_.empty() ? 8 : slots_.size() * 2);
        place(Slot{position, hash});
        ++used_;
    }

    /// Calls action(position) for the positions added under `hash`, in the
    /// order added, until it returns true; returns whether one did.
    template <typename Visit>
    bool visit(std::uint32_t hash, Visit &&action) const
    {
        const Slot *slot = slotOf(hash);
        if (slot == nullptr)
            return false;
        if (action(slot->position))
            return true;
        if (later_)
            if (const auto found = later_->find(slot->position); found != later_->end())
                for (std::uint32_t position : found->second)
                    if (action(position))
                        return true;
        return false;
    }

    /// Empties it, keeping room for `expected` positions.
    void clear(std::size_t expected = 0)
    {
        slots_.clear();
        later_.reset();
        used_ = 0;
        std::size_t capacity = 8;
        while (expected * 4 > capacity * 3)
            capacity *= 2;
        if (expected != 0)
            grow(capacity);
    }

private:
    static constexpr std::uint32_t kEmpty = UINT32_MAX;

    struct Slot {
        std::uint32_t position = kEmpty;  // the first added under the hash
        std::uint32_t hash = 0;
    };

    const Slot *slotOf(std::uint32_t hash) const
    {
        if (slots_.empty())
            return nullptr;
        const std::size_t mask = slots_.size() - 1;
        for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
            const Slot &slot = slots_[at];
            if (slot.position == kEmpty)
                return nullptr;
            if (slot.hash == hash)
                return &slot;
        }
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

    std::vector<Slot> slots_;  // a power of two of them, or none
    std::unique_ptr<std::unordered_map<std::uint32_t, std::vector<std::uint32_t>>> later_;
    std::size_t used_ = 0;  // slots in use
};

/// The ends of the names of a short list, as bits of a 64-bit set: names
/// equal ignoring case have the same ASCII first and last characters,
/// lower-cased, so a name whose ends have no bit is none of the list's, and
/// most new names are told free without folding them. A name with an end
/// beyond ASCII (which may fold to ASCII) fills the set.
class NameEnds {
public:
    void add(std::string_view name)
    {
        const int bit = bitOf(name);
        bits_ |= bit < 0 ? ~std::uint64_t{0} : std::uint64_t{1} << bit;
    }

    /// False when no name added has the same ends as `name`.
    bool mayHold(std::string_view name) const
    {
        const int bit = bitOf(name);
        return bit < 0 || ((bits_ >> bit) & 1) != 0;
    }

    void clear() { bits_ = 0; }

private:
    static int bitOf(std::string_view name)
    {
        if (name.empty())
            return -1;
        const auto first = static_cast<unsigned char>(name.front());
        const auto last = static_cast<unsigned char>(name.back());
        if (first >= 0x80 || last >= 0x80)
            return -1;
        return (asciiLower(name.front()) * 31 + asciiLower(name.back())) & 63;
    }

    std::uint64_t bits_ = 0;
};

/// The items of one owner's list by case-folded name, for look-ups and
/// renaming in constant time per name tried. It follows the list as items
/// are added through it and rebuilds itself when one of its items has been
/// renamed since (renames after adding are rare). Items point at it, so it
/// never moves. It holds list positions by the hash of the folded name and
/// compares candidates by folding the items' own names; a list of up to
/// kScanLimit items, as most tables' are, is searched in place instead,
/// after a look at its names' ends (NameEnds).
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
        if (!positions_ && !ends_.mayHold(name))
            return nullptr;
        const FoldedKey key = FoldedKey::ofName(name);
        T *first = nullptr;
        T *exact = nullptr;
        visit(items, key, [&](std::uint32_t position) {
            T *item = items[position].get();
            if (!foldsTo(item->getName(), key.folded))
                return false;
            if (first == nullptr)
                first = item;
            if (item->getName() == name)
                exact = item;
            return exact != nullptr;
        });
        return exact != nullptr ? exact : first;
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
        if (!positions_ && !ends_.mayHold(object.getName()))
            return false;
        FoldedKey key = FoldedKey::ofName(object.getName());
        if (!holds(items, key))
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
            if (!holds(items, FoldedKey::ofFolded(foldedBase + tail))) {
                next = suffix + 1;
                object.setName(base + tail);
                return true;
            }
        }
    }

private:
    static constexpr std::size_t kScanLimit = 16;

    bool upToDate(std::size_t indexedCount) const
    {
        return renamesSeen_ == renames_ && indexed_ == indexedCount;
    }


    // Calls action(position) for the positions that may hold the key's name,
    // in list order, until it returns true.
    template <typename Visit>
    bool visit(const Items &items, const FoldedKey &key, Visit &&action) const
    {
        if (positions_)
            return positions_->visit(key.hash(), action);
        for (std::size_t position = 0; position < items.size(); ++position)
            if (items[position]->hasName() && action(static_cast<std::uint32_t>(position)))
                return true;
        return false;
    }

    void refresh(const Items &items)
    {
        if (!upToDate(items.size()))
            rebuild(items);
    }

    // Whether an item's name folds to the key.
    bool holds(const Items &items, const FoldedKey &key) const
    {
        return visit(items, key, [&](std::uint32_t position) {
            return foldsTo(items[position]->getName(), key.folded);
        });
    }

    void insert(const Items &items, std::size_t position)
    {
        ++indexed_;
        if (positions_) {
            hash(items, position);
        } else if (indexed_ <= kScanLimit) {
            if (items[position]->hasName())
                ends_.add(items[position]->getName());
        } else {
            // Too many to search in place from now on: hash them all.
            positions_ = std::make_unique<PositionsByHash>();
            positions_->clear(indexed_);
            for (std::size_t earlier = 0; earlier < indexed_; ++earlier)
                hash(items, earlier);
        }
    }

    void hash(const Items &items, std::size_t position)
    {
        const T &item = *items[position];
        if (item.hasName())
            positions_->add(FoldedKey::ofName(item.getName()).hash(), static_cast<std::uint32_t>(position));
    }

    void rebuild(const Items &items)
    {
        positions_.reset();
        ends_.clear();
        nextSuffix_.reset();
        indexed_ = 0;
        renamesSeen_ = renames_;
        for (std::size_t position = 0; position < items.size(); ++position)
            insert(items, position);
    }

    std::unique_ptr<PositionsByHash> positions_;  // made past kScanLimit items
    NameEnds ends_;                               // of the names, until positions_ is made
    std::unique_ptr<std::unordered_map<std::string, std::size_t>> nextSuffix_;
    std::uint64_t renames_ = 0;      // bumped by items renamed after adding
    std::uint64_t renamesSeen_ = 0;  // as of the last rebuild
    std::size_t indexed_ = 0;        // items followed, named or not
};

/// What trim() gives, as a view into `name` when it is one: unless a quote
/// doubled inside a quoted name has to be undoubled (nullopt then).
std::optional<std::string_view> trimmedView(std::string_view name);

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
