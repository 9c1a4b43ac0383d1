// Common interface of the keyed, insertion-ordered containers.
#pragma once

#include <ZeKL/IModelItem.h>

namespace Korvel {

class ZEKL_API IContainer : public virtual IModelItem {
public:
    // Removes and destroys every item.
    virtual void Clear() = 0;
    // Number of items.
    virtual uint32_t GetCount() const = 0;
    ~IContainer() override;
};

}  // namespace Korvel
