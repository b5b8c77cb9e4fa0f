#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace SchemaModel::detail {
struct NameIndexAccess;
}

/// Common base of every named schema object: a (trimmed) name and a bag of
/// key/value properties used for dialect-specific details.
class SQLObject {
public:
    using PropertyValue = std::variant<bool, std::string>;
    using PropertyMap = std::map<std::string, PropertyValue, std::less<>>;

    SQLObject() = default;
    virtual ~SQLObject();

    // Objects are referenced by raw pointers from elsewhere in the model
    // (resolved references, foreign key entries), so they never move.
    SQLObject(const SQLObject &) = delete;
    SQLObject &operator=(const SQLObject &) = delete;
    SQLObject(SQLObject &&) = delete;
    SQLObject &operator=(SQLObject &&) = delete;

    const std::string &getName() const { return name_; }
    bool hasName() const { return !name_.empty(); }
    /// Stores SchemaModel::trim(name); an empty result leaves the object unnamed.
    virtual void setName(std::string_view name);

    void setProperty(std::string_view key, std::string_view value);
    void setPropertyAsBoolean(std::string_view key, bool value);
    /// Removes the key; nothing happens when it is absent.
    void removeProperty(std::string_view key);
    bool hasProperty(std::string_view key) const;
    const PropertyMap &getProperties() const;
    /// False when the key is absent or holds a string.
    bool getPropertyAsBoolean(std::string_view key) const;
    /// Nullopt when the key is absent or holds a boolean.
    std::optional<std::string> getPropertyAsString(std::string_view key) const;

private:
    friend struct SchemaModel::detail::NameIndexAccess;

    std::string name_;
    // Made at the first property: most objects have none, and an empty map
    // would take six words in every one of them.
    std::unique_ptr<PropertyMap> properties_;
    // Once an owner has indexed the object by name: the owner's count of
    // renames, which renaming the object bumps so that the owner's index
    // knows it is out of date.
    std::uint64_t *ownerRenames_ = nullptr;
};
