// Common implementation base of every model item: the parent back pointer and the root walk.
#pragma once

#include "model/ZModelMemory.h"

#include <ZeKL/IModelItem.h>

#include <cstddef>

namespace Korvel {

class ZModelItem : public virtual IModelItem {
public:
    ZModelItem() = default;
    explicit ZModelItem(IModelItem* parent) : m_parent(parent) {}
    // A copy starts detached: the holder that takes it sets the parent.
    ZModelItem(const ZModelItem& /*other*/) : IModelItem(), m_parent(nullptr) {}
    // Assignment never moves an item to another holder.
    ZModelItem& operator=(const ZModelItem& /*other*/) { return *this; }
    ~ZModelItem() override;

    // Items live in model memory: the memory of the model a read is building, else the heap
    // (see ZModelMemory.h).
    static void* operator new(std::size_t size) { return ModelAllocate(size); }
    static void operator delete(void* block) noexcept { ModelFree(block); }

    // Stores the pointer as given (null allowed); neither the old nor the new parent is told.
    virtual void SetParent(IModelItem* parent);

    bool HasParent() const override;
    const IModelItem* GetParent() const override;
    IModelItem* GetParent() override;
    const IModelItem* GetRoot() const override;
    IModelItem* GetRoot() override;
    bool IsSupported() const override;

private:
    IModelItem* m_parent = nullptr;
};

}  // namespace Korvel
