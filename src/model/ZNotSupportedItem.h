// The null object that stands where a document element has no model item.
#pragma once

#include <ZeKL/IModelItem.h>

namespace Korvel {

class ZNotSupportedItem : public virtual IModelItem {
public:
    // The one shared item of the process; it is never deleted.
    static ZNotSupportedItem* GetInstance();

    ZNotSupportedItem(const ZNotSupportedItem&) = delete;
    ZNotSupportedItem& operator=(const ZNotSupportedItem&) = delete;

    bool HasParent() const override;
    const IModelItem* GetParent() const override;
    IModelItem* GetParent() override;
    const IModelItem* GetRoot() const override;
    IModelItem* GetRoot() override;
    bool IsSupported() const override;
    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;

private:
    ZNotSupportedItem() = default;
    ~ZNotSupportedItem() override = default;
};

}  // namespace Korvel
