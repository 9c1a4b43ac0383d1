// The ids that lead to an item of a model, and the one-line form of such a path.
#pragma once

#include "model/ZModelItem.h"

#include <ZeKL/ItemPath.h>

#include <string>

namespace Korvel {

// The element name of a message kind: "REQUEST", "RESPONSE", "NEGATIVE_RESPONSE"; empty for
// another kind.
const char* MessageElementName(uint32_t messageKind);

// Fills the fields of `path` that the item and the items holding it name (an instance's
// message's parameter: all three). Fields that none of them names are left as they are.
void AddItemPath(const ZModelItem* item, ItemPath& path);

// "Instance/RESPONSE/Parameter", "conversion Id/entry 3", "nrc 16"; empty for an empty path.
std::string ItemPathToText(const ItemPath& path);

}  // namespace Korvel
