#include <ZeKL/Exports.h>

#include "model/ModelUtils.h"

namespace Korvel {

// The utilities hold no state: the interface is handed out non-const only because the
// described getter returns it so.
IDataModelUtils& GetDataModelUtils() {
    return const_cast<ZDataModelUtilsImpl&>(ModelUtils());
}

}  // namespace Korvel
