#include "ModelJson.h"

#include <SchemaModel/SchemaModel.h>

#include <optional>
#include <string>
#include <variant>

using nlohmann::ordered_json;

namespace sqlantlr {

namespace {

ordered_json optionalText(const std::optional<std::string> &value)
{
    return value ? ordered_json(*value) : ordered_json(nullptr);
}

ordered_json nameOrNull(const SQLObject &object)
{
    return object.hasName() ? ordered_json(object.getName()) : ordered_json(nullptr);
}

ordered_json properties(const SQLObject &object)
{
    ordered_json result = ordered_json::object();
    for (const auto &[key, value] : object.getProperties()) {
        if (const bool *flag = std::get_if<bool>(&value)) {
            result[key] = *flag;
        } else {
            result[key] = std::get<std::string>(value);
        }
    }
    return result;
}

ordered_json checks(const std::vector<std::unique_ptr<SQLConstraint>> &constraints)
{
    ordered_json result = ordered_json::array();
    for (const auto &check : constraints) {
        result.push_back({{"name", check->getName()}, {"expression", check->getCheckConstraintExpression().value_or("")}});
    }
    return result;
}

ordered_json field(const SQLField &field)
{
    ordered_json result;
    result["name"] = field.getName();
    result["type"] = field.getType();
    result["notNull"] = field.isNotNull();
    result["autoIncrement"] = field.isAutoIncrement();
    result["primaryKey"] = field.isPrimaryKey();
    result["defaultValue"] = optionalText(field.getDefaultValue());
    result["properties"] = properties(field);
    if (const SQLFieldReference *reference = field.getReferences()) {
        result["references"] = {
            {"table", reference->table},
            {"field", optionalText(reference->field)},
            {"referenceId", optionalText(reference->referenceId)},
            {"onDelete", reference->onDelete},
            {"onUpdate", reference->onUpdate},
            {"deferrable", reference->deferrable},
            {"initiallyDeferred", reference->initiallyDeferred},
            {"resolved", reference->resolved},
        };
    } else {
        result["references"] = nullptr;
    }
    result["checks"] = checks(field.checkConstraints());
    return result;
}

ordered_json index(const SQLIndex &index)
{
    ordered_json result;
    result["kind"] = index.isConstraint() ? "unique" : "index";
    result["name"] = nameOrNull(index);
    result["indexType"] = optionalText(index.getIndexType());
    result["fieldName"] = optionalText(index.getFieldName());
    ordered_json entries = ordered_json::array();
    for (const auto &entry : index.entries()) {
        entries.push_back({{"name", entry->getName()}, {"prefixSize", optionalText(entry->getPrefixSize())}});
    }
    result["entries"] = entries;
    result["properties"] = properties(index);
    return result;
}

ordered_json foreignKey(const SQLForeignKey &key)
{
    ordered_json result;
    result["name"] = nameOrNull(key);
    result["targetTable"] = key.getTargetTableName().value_or("");
    ordered_json entries = ordered_json::array();
    for (const auto &entry : key.entries()) {
        entries.push_back({{"field", entry->getSource() != nullptr ? entry->getSource()->getName() : std::string()},
                           {"target", optionalText(entry->getTargetName())}});
    }
    result["entries"] = entries;
    result["onDelete"] = key.getDeleteAction();
    result["onUpdate"] = key.getUpdateAction();
    result["deferrable"] = key.isDeferrable();
    result["initiallyDeferred"] = key.isInitiallyDeferred();
    result["properties"] = properties(key);
    result["resolved"] = key.isResolved();
    return result;
}

ordered_json table(const SQLTable &table)
{
    ordered_json result;
    result["name"] = table.getName();
    result["schemaName"] = optionalText(table.getSchemaName());
    result["baseName"] = optionalText(table.getBaseName());
    result["tableType"] = optionalText(table.getTableType());
    result["properties"] = properties(table);
    ordered_json fields = ordered_json::array();
    for (const auto &item : table.fields()) {
        fields.push_back(field(*item));
    }
    result["fields"] = fields;
    ordered_json indexes = ordered_json::array();
    for (const auto &item : table.indexes()) {
        indexes.push_back(index(*item));
    }
    result["indexes"] = indexes;
    ordered_json keys = ordered_json::array();
    for (const auto &item : table.foreignKeys()) {
        keys.push_back(foreignKey(*item));
    }
    result["foreignKeys"] = keys;
    result["checks"] = checks(table.checkConstraints());
    return result;
}

ordered_json view(const SQLView &view)
{
    ordered_json result;
    result["name"] = view.getName();
    result["schemaName"] = optionalText(view.getSchemaName());
    result["baseName"] = optionalText(view.getBaseName());
    result["queryString"] = optionalText(view.getQueryString());
    result["columns"] = view.columns();
    result["selectColumns"] = view.selectColumns();
    ordered_json tables = ordered_json::array();
    for (const SQLViewTableEntry &entry : view.tableEntries()) {
        tables.push_back({{"name", entry.name}, {"alias", entry.alias}});
    }
    result["tables"] = tables;
    return result;
}

} // namespace

ordered_json modelToJson(const SQLContainer &container, const std::vector<SQLParserException> &exceptions)
{
    ordered_json result;
    ordered_json tables = ordered_json::array();
    for (const auto &item : container.tables()) {
        tables.push_back(table(*item));
    }
    result["tables"] = tables;
    ordered_json views = ordered_json::array();
    for (const auto &item : container.views()) {
        views.push_back(view(*item));
    }
    result["views"] = views;
    ordered_json records = ordered_json::array();
    for (const SQLParserException &exception : exceptions) {
        records.push_back(exception.reason);
    }
    result["exceptions"] = records;
    return result;
}

} // namespace sqlantlr
