#pragma once

// The type text and default value of a column, held once for all columns
// that have the same pair: schemas repeat a few pairs ("int(11)" without a
// default, "varchar(255)" DEFAULT NULL, ...) over thousands of columns.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace SchemaModel::detail {

struct FieldTexts {
    std::string type;
    std::optional<std::string> defaultValue;
    std::size_t users = 0;  // guarded by the pool's lock
};

/// The shared entry holding exactly this pair, made if there is none, with
/// one more user. Safe to call from several threads.
const FieldTexts *acquireFieldTexts(std::string_view type, std::optional<std::string_view> defaultValue);

/// One user less; the entry is freed with its last user. nullptr is ignored.
void releaseFieldTexts(const FieldTexts *texts);

/// How many distinct pairs are held now.
std::size_t sharedFieldTextsCount();

} // namespace SchemaModel::detail
