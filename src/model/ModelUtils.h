// The one instance of the data-model utilities. The model and the layers above it call it
// directly; the exported GetDataModelUtils hands the same object to callers.
#pragma once

#include "model/ZDataModelUtilsImpl.h"

namespace Korvel {

const ZDataModelUtilsImpl& ModelUtils();

}  // namespace Korvel
