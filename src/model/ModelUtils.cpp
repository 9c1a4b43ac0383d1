#include "model/ModelUtils.h"

namespace Korvel {

const ZDataModelUtilsImpl& ModelUtils() {
    static const ZDataModelUtilsImpl utils;
    return utils;
}

}  // namespace Korvel
