#pragma once

// Name look-up and renaming helpers shared by the model classes.

#include <SchemaModel/Names.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace SchemaModel::detail {

/// The case-folded form of a name: two names are equal ignoring case exactly
/// when their folded forms are equal.
std::string foldedName(std::string_view name);

/// The first item named exactly `name`, else the first whose name matches
/// case-insensitively. Unnamed items never match.
template <typename T>
T *findByName(const std::vector<std::unique_ptr<T>> &items, std::string_view name)
{
    if (name.empty())
        return nullptr;
    for (const auto &item : items)
        if (item->getName() == name)
            return item.get();
    for (const auto &item : items)
        if (item->hasName() && namesEqualIgnoringCase(item->getName(), name))
            return item.get();
    return nullptr;
}

template <typename T>
bool isNameTaken(const std::vector<std::unique_ptr<T>> &items, std::string_view name)
{
    for (const auto &item : items)
        if (item->hasName() && namesEqualIgnoringCase(item->getName(), name))
            return true;
    return false;
}

/// Gives `object` a name not yet used in `items`: its own name if free,
/// otherwise the first free one of name_1, name_2, ...
/// Returns whether it was renamed.
template <typename T, typename U>
bool makeNameUnique(const std::vector<std::unique_ptr<T>> &items, U &object)
{
    if (!object.hasName() || !isNameTaken(items, object.getName()))
        return false;
    const std::string base = object.getName();
    for (std::size_t suffix = 1;; ++suffix) {
        std::string candidate = base + "_" + std::to_string(suffix);
        if (!isNameTaken(items, candidate)) {
            object.setName(candidate);
            return true;
        }
    }
}

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
