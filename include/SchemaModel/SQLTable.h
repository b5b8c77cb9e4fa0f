#pragma once

#include <SchemaModel/SQLField.h>
#include <SchemaModel/SQLForeignKey.h>
#include <SchemaModel/SQLIndex.h>
#include <SchemaModel/SQLObject.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace SchemaModel::detail {
struct TableNameIndexes;
}

/// A table; owns its fields, indexes (with unique constraints), foreign keys
/// and check constraints.
class SQLTable : public SQLObject {
public:
    SQLTable();
    ~SQLTable() override;

    /// A table's storage is cut from the same blocks as its fields' (see
    /// SQLField); a subclass of another size uses the general allocator.
    static void *operator new(std::size_t size);
    static void operator delete(void *table, std::size_t size) noexcept;

    static std::unique_ptr<SQLTable> tableForImportWithName(std::string_view name);

    /// Trimmed; an empty result clears the schema name.
    void setSchemaName(std::string_view schemaName);
    std::optional<std::string> getSchemaName() const { return schemaName_; }
    /// Trimmed; also renames the table to the base name.
    void setBaseName(std::string_view baseName);
    std::optional<std::string> getBaseName() const { return baseName_; }
    /// Table type as written (e.g. "TEMPORARY"); an empty text clears it.
    void setTableType(std::string_view tableType);
    std::optional<std::string> getTableType() const { return tableType_; }

    /// Exact name first, then case-insensitively; nullptr when absent.
    SQLField *getFieldByName(std::string_view name) const;
    /// Field names joined with ", ".
    std::string getFieldNameListString() const;

    /// Adds the field, renaming it to name_1, name_2, ... when its name is
    /// already taken (case-insensitively). *didRename tells whether it was.
    SQLField *addWithRenaming(std::unique_ptr<SQLField> field, bool *didRename = nullptr);
    /// Moves the fields with the given names (exact or case-insensitive, as
    /// getFieldByName finds them) before the others, in the order of `names`;
    /// the others keep their order. Names without a field are passed over.
    void moveFieldsToFront(const std::vector<std::string> &names);
    /// Adds an index or unique constraint, renaming it like fields; unnamed
    /// indexes never clash.
    SQLIndex *addWithRenaming(std::unique_ptr<SQLIndex> index);
    /// Adds an index or unique constraint as it is.
    SQLIndex *add(std::unique_ptr<SQLIndex> index);
    SQLForeignKey *add(std::unique_ptr<SQLForeignKey> foreignKey);
    SQLConstraint *addCheckConstraint(std::unique_ptr<SQLConstraint> constraint);

    /// Builds an index with one entry per field name (entry name and field
    /// name both set), the given index type and the last entry's field name
    /// as the index's field name, and adds it with renaming.
    SQLIndex *addParsedIndexWithName(std::optional<std::string_view> name,
                                     const std::vector<std::string> &fieldNames,
                                     std::string_view type);
    /// Makes exactly the named fields the primary key.
    void setPrimaryKeyToFieldNames(const std::vector<std::string> &names);

    /// Makes room for `count` more fields, for an importer that knows how
    /// many it is about to add.
    void reserveFields(std::size_t count) { fields_.reserve(fields_.size() + count); }

    const std::vector<std::unique_ptr<SQLField>> &fields() const { return fields_; }
    const std::vector<std::unique_ptr<SQLIndex>> &indexes() const { return indexes_; }
    const std::vector<std::unique_ptr<SQLForeignKey>> &foreignKeys() const { return foreignKeys_; }
    const std::vector<std::unique_ptr<SQLConstraint>> &checkConstraints() const { return checks_; }
    /// Primary key fields in field order.
    std::vector<SQLField *> getPrimaryKeyFields() const;

private:
    std::optional<std::string> schemaName_;
    std::optional<std::string> baseName_;
    std::optional<std::string> tableType_;
    std::vector<std::unique_ptr<SQLField>> fields_;
    std::vector<std::unique_ptr<SQLIndex>> indexes_;
    std::vector<std::unique_ptr<SQLForeignKey>> foreignKeys_;
    std::vector<std::unique_ptr<SQLConstraint>> checks_;
    // Fields and indexes by case-folded name, for look-ups and renaming
    // that do not scan the lists.
    std::unique_ptr<SchemaModel::detail::TableNameIndexes> names_;
};
