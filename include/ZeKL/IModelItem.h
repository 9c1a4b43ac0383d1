// Base interface of every item of the in-memory description.
#pragma once

#include <ZeKL/Types.h>

namespace Korvel {

class IConstModelItemVisitor;

class ZEKL_API IModelItem {
public:
    // True when the item has a parent.
    virtual bool HasParent() const = 0;
    // The item that holds this one, or null.
    virtual const IModelItem* GetParent() const = 0;
    virtual IModelItem* GetParent() = 0;
    // The topmost item reached through the parents (the item itself when it has none).
    virtual const IModelItem* GetRoot() const = 0;
    virtual IModelItem* GetRoot() = 0;
    // False only for the shared not-supported item.
    virtual bool IsSupported() const = 0;
    // Calls the visitor operation of the item's own kind; both overloads behave alike.
    virtual void Accept(IConstModelItemVisitor& visitor) const = 0;
    virtual void Accept(IConstModelItemVisitor& visitor) = 0;
    virtual ~IModelItem();
};

}  // namespace Korvel
