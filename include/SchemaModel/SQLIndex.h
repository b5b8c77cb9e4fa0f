#pragma once

#include <SchemaModel/SQLObject.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One column of an index or unique constraint.
class SQLIndexEntry : public SQLObject {
public:
    SQLIndexEntry() = default;
    ~SQLIndexEntry() override;

    /// Stores the trimmed field name.
    void setFieldName(std::string_view fieldName);
    const std::string &getFieldName() const { return fieldName_; }

    /// Prefix length as written (e.g. "10" for `col(10)`).
    void setPrefixSize(std::string_view prefixSize);
    std::optional<std::string> getPrefixSize() const { return prefixSize_; }

private:
    std::string fieldName_;
    std::optional<std::string> prefixSize_;
};

/// An index of a table; owns its entries.
class SQLIndex : public SQLObject {
public:
    SQLIndex() = default;
    ~SQLIndex() override;

    /// Index method as written (e.g. "BTREE"); an empty text clears it.
    void setIndexType(std::string_view indexType);
    std::optional<std::string> getIndexType() const { return indexType_; }

    /// Returns the added entry, or nullptr when given nullptr.
    SQLIndexEntry *addIndexEntry(std::unique_ptr<SQLIndexEntry> entry);
    const std::vector<std::unique_ptr<SQLIndexEntry>> &entries() const { return entries_; }

    /// Stores the trimmed field name; an empty result clears it.
    void setFieldName(std::string_view fieldName);
    std::optional<std::string> getFieldName() const { return fieldName_; }

    virtual bool isConstraint() const { return false; }

private:
    std::optional<std::string> indexType_;
    std::vector<std::unique_ptr<SQLIndexEntry>> entries_;
    std::optional<std::string> fieldName_;
};

/// A unique constraint (listed with a table's indexes) or a check constraint
/// (listed with a table's or a field's checks).
class SQLConstraint : public SQLIndex {
public:
    SQLConstraint() = default;
    ~SQLConstraint() override;

    static std::unique_ptr<SQLConstraint> constraint();

    /// Stored exactly as given.
    void setCheckConstraintExpression(std::string_view expression);
    std::optional<std::string> getCheckConstraintExpression() const { return checkExpression_; }

    bool isConstraint() const override { return true; }

private:
    std::optional<std::string> checkExpression_;
};
