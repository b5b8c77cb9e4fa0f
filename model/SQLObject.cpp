#include <SchemaModel/SQLObject.h>

#include "NameLookup.h"

#include <SchemaModel/Names.h>

#include <atomic>

namespace {

std::atomic<std::uint64_t> indexedRenames{0};

} // namespace

namespace SchemaModel::detail {

std::uint64_t NameIndexAccess::renameCount()
{
    return indexedRenames.load(std::memory_order_acquire);
}

void NameIndexAccess::markIndexed(SQLObject &object)
{
    object.indexedByName_ = true;
}

} // namespace SchemaModel::detail

SQLObject::~SQLObject() = default;

void SQLObject::setName(std::string_view name)
{
    std::string trimmed = SchemaModel::trim(name);
    if (indexedByName_ && trimmed != name_)
        indexedRenames.fetch_add(1, std::memory_order_acq_rel);
    name_ = std::move(trimmed);
}

void SQLObject::setProperty(std::string_view key, std::string_view value)
{
    if (auto it = properties_.find(key); it != properties_.end())
        it->second = std::string(value);
    else
        properties_.emplace(std::string(key), std::string(value));
}

void SQLObject::setPropertyAsBoolean(std::string_view key, bool value)
{
    if (auto it = properties_.find(key); it != properties_.end())
        it->second = value;
    else
        properties_.emplace(std::string(key), value);
}

bool SQLObject::hasProperty(std::string_view key) const
{
    return properties_.find(key) != properties_.end();
}

bool SQLObject::getPropertyAsBoolean(std::string_view key) const
{
    auto it = properties_.find(key);
    if (it == properties_.end())
        return false;
    const bool *value = std::get_if<bool>(&it->second);
    return value != nullptr && *value;
}

std::optional<std::string> SQLObject::getPropertyAsString(std::string_view key) const
{
    auto it = properties_.find(key);
    if (it == properties_.end())
        return std::nullopt;
    if (const std::string *value = std::get_if<std::string>(&it->second))
        return *value;
    return std::nullopt;
}
