// The null object that stands where a document element has no model item.
#pragma once

#include "model/ZModelItem.h"

namespace Korvel {

class ZNotSupportedItem : public ZModelItem {
public:
    // The one shared item of the process; it is never deleted.
    static ZNotSupportedItem* GetInstance();

    ZNotSupportedItem(const ZNotSupportedItem&) = delete;
    ZNotSupportedItem& operator=(const ZNotSupportedItem&) = delete;

    static constexpr bool IsKind(ZItemKind kind) { return kind == ZItemKind::NotSupported; }
    ZItemKind Kind() const override { return ZItemKind::NotSupported; }

    // It never has a parent: SetParent changes nothing.
    void SetParent(IModelItem* parent) override;
    bool IsSupported() const override;
    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;

private:
    ZNotSupportedItem() = default;
    ~ZNotSupportedItem() override = default;
};

}  // namespace Korvel
