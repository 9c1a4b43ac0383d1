#include "model/ZFactoryImpl.h"

#include <ZeKL/Exports.h>

namespace Korvel {

// Built on the first call and destroyed at unload; the first call must come from one thread.
IFactory& GetFactory() {
    static ZFactoryImpl factory;
    return factory;
}

}  // namespace Korvel
