// The model side of CREATE INDEX (treegrammar/65-IndexSequence.g).
#include "IndexBuilder.h"

#include "KeyBuilder.h"

#include <SchemaModel/SchemaModel.h>

std::unique_ptr<SQLIndex> kp_newStatementIndex()
{
    return kp_newTableIndex(nullptr);
}

void kp_setIndexType(SQLIndex *index, const char *indexType)
{
    if (index != nullptr) {
        index->setIndexType(indexType);
    }
}

void kp_setIndexTypeFromWord(SQLIndex *index, pANTLR3_BASE_TREE kindWord)
{
    if (kindWord != nullptr && !kp_isRecoveryNode(kindWord)) {
        kp_setIndexType(index, kp_textIsWord(kp_nodeText(kindWord), "SPATIAL") ? "SPATIAL" : "BITMAP");
    }
}

void kp_setIndexNameFromParts(SQLIndex *index, const std::vector<std::string> *nameParts)
{
    if (index != nullptr && nameParts != nullptr && !nameParts->empty()) {
        index->setName(nameParts->back());
    }
}

SQLIndex *kp_addIndexToNamedTable(SQLContainer *container, const std::vector<std::string> *tableParts,
                                  std::unique_ptr<SQLIndex> index)
{
    if (container == nullptr || tableParts == nullptr || tableParts->empty()) {
        return nullptr;
    }
    SQLObject *target = tableParts->size() == 1
                            ? container->getObjectWithSchema((*tableParts)[0], std::nullopt)
                            : container->getObjectWithSchema((*tableParts)[1], (*tableParts)[0]);
    auto *table = dynamic_cast<SQLTable *>(target);
    return table != nullptr ? table->add(std::move(index)) : nullptr;
}
