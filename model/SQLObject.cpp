#include <SchemaModel/SQLObject.h>

#include "NameLookup.h"

#include <SchemaModel/Names.h>

namespace SchemaModel::detail {

void NameIndexAccess::markIndexed(SQLObject &object, std::uint64_t *ownerRenames)
{
    object.ownerRenames_ = ownerRenames;
}

} // namespace SchemaModel::detail

SQLObject::~SQLObject() = default;

void SQLObject::setName(std::string_view name)
{
    // Most names are trimmed in place; only one with a doubled quote inside
    // its quotes needs a new text.
    std::string undoubled;
    std::string_view trimmed;
    if (const std::optional<std::string_view> view = SchemaModel::detail::trimmedView(name)) {
        trimmed = *view;
    } else {
        undoubled = SchemaModel::trim(name);
        trimmed = undoubled;
    }
    if (ownerRenames_ != nullptr && trimmed != name_)
        ++*ownerRenames_;
    name_.assign(trimmed.data(), trimmed.size());
}

namespace {

const SQLObject::PropertyMap noProperties;

} // namespace

const SQLObject::PropertyMap &SQLObject::getProperties() const
{
    return properties_ ? *properties_ : noProperties;
}

void SQLObject::setProperty(std::string_view key, std::string_view value)
{
    if (!properties_)
        properties_ = std::make_unique<PropertyMap>();
    if (auto it = properties_->find(key); it != properties_->end())
        it->second = std::string(value);
    else
        properties_->emplace(std::string(key), std::string(value));
}

void SQLObject::removeProperty(std::string_view key)
{
    if (!properties_)
        return;
    if (auto it = properties_->find(key); it != properties_->end())
        properties_->erase(it);
}

void SQLObject::setPropertyAsBoolean(std::string_view key, bool value)
{
    if (!properties_)
        properties_ = std::make_unique<PropertyMap>();
    if (auto it = properties_->find(key); it != properties_->end())
        it->second = value;
    else
        properties_->emplace(std::string(key), value);
}

bool SQLObject::hasProperty(std::string_view key) const
{
    return properties_ && properties_->find(key) != properties_->end();
}

bool SQLObject::getPropertyAsBoolean(std::string_view key) const
{
    const PropertyMap &properties = getProperties();
    auto it = properties.find(key);
    if (it == properties.end())
        return false;
    const bool *value = std::get_if<bool>(&it->second);
    return value != nullptr && *value;
}

std::optional<std::string> SQLObject::getPropertyAsString(std::string_view key) const
{
    const PropertyMap &properties = getProperties();
    auto it = properties.find(key);
    if (it == properties.end())
        return std::nullopt;
    if (const std::string *value = std::get_if<std::string>(&it->second))
        return *value;
    return std::nullopt;
}
