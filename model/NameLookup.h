#pragma once

// Name look-up and renaming helpers shared by the model classes.

#include <SchemaModel/Names.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <string>
#include <string_view>
#include <vector>

class SQLObject;

namespace SchemaModel::detail {

/// The case-folded form of a name: two names are equal ignoring case exactly
/// when their folded forms are equal.
std::string foldedName(std::string_view name);

/// Ties an object to the rename count of the index that holds it.
struct NameIndexAccess {
    static void markIndexed(SQLObject &object, std::uint64_t *ownerRenames);
};

/// The items of one owner's list by case-folded name, for look-ups and
/// renaming in constant time per name tried. It follows the list as items
/// are added through it and rebuilds itself when one of its items has been
/// renamed since (renames after adding are rare). Items point at it, so it
/// never moves.
template <typename T>
class NameIndex {
    // The items of one folded name in list order. Nearly every name has one
    // item, which needs no list of its own: the index costs one map node per item.
    struct Entry {
        T *first = nullptr;
        std::vector<T *> more;
    };

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
            insert(item);
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
        const Entry *candidates = named(items, foldedName(name));
        if (candidates == nullptr)
            return nullptr;
        if (candidates->first->getName() == name)
            return candidates->first;
        for (T *item : candidates->more)
            if (item->getName() == name)
                return item;
        return candidates->first;
    }

    /// Gives `object` a name not yet used in `items` (case-insensitively):
    /// its own name if free, otherwise the first free one of name_1,
    /// name_2, ... Returns whether it was renamed.
    template <typename U>
    bool makeUnique(const Items &items, U &object)
    {
        if (!object.hasName() || named(items, foldedName(object.getName())) == nullptr)
            return false;
        const std::string base = object.getName();
        const std::string foldedBase = foldedName(base);
        // Every suffix below the hint was taken when it was last tried, and
        // names only become free through a rename, which resets the hints.
        std::size_t &next = nextSuffix_[foldedBase];
        for (std::size_t suffix = next == 0 ? 1 : next;; ++suffix) {
            const std::string tail = "_" + std::to_string(suffix);
            if (byName_.find(foldedBase + tail) == byName_.end()) {
                next = suffix + 1;
                object.setName(base + tail);
                return true;
            }
        }
    }

private:
    bool upToDate(std::size_t indexedCount) const
    {
        return renamesSeen_ == renames_ && indexed_ == indexedCount;
    }

    void insert(T &item)
    {
        if (item.hasName()) {
            Entry &entry = byName_[foldedName(item.getName())];
            if (entry.first == nullptr)
                entry.first = &item;
            else
                entry.more.push_back(&item);
        }
        ++indexed_;
    }

    void rebuild(const Items &items)
    {
        byName_.clear();
        nextSuffix_.clear();
        indexed_ = 0;
        renamesSeen_ = renames_;
        for (const auto &item : items)
            insert(*item);
    }

    const Entry *named(const Items &items, const std::string &folded)
    {
        if (!upToDate(items.size()))
            rebuild(items);
        const auto found = byName_.find(folded);
        return found == byName_.end() ? nullptr : &found->second;
    }

    std::unordered_map<std::string, Entry> byName_;
    std::unordered_map<std::string, std::size_t> nextSuffix_;
    std::uint64_t renames_ = 0;      // bumped by items renamed after adding
    std::uint64_t renamesSeen_ = 0;  // as of the last rebuild
    std::size_t indexed_ = 0;
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
