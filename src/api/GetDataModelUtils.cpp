#include <ZeKL/Exports.h>

#include "model/ZDataModelUtilsImpl.h"

namespace Korvel {

IDataModelUtils& GetDataModelUtils() {
    static ZDataModelUtilsImpl utils;
    return utils;
}

}  // namespace Korvel
