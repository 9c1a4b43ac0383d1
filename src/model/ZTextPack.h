// A fixed number of zero-terminated texts kept back to back in one block. Items of large
// documents hold many short texts; one block per item instead of one string object per text
// keeps a loaded model within a small multiple of the document's size.
//
// The block is the owner's storage (the bytes behind an item that MakeItemWithTexts made, in
// whatever memory the item lives in) or, once a text changes, a heap block of the pack's own.
#pragma once

#include "model/TextOrEmpty.h"
#include "model/ZModelItem.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace Korvel {

template <std::size_t N>
class ZTextPack {
public:
    using Texts = std::array<const char*, N>;

    // The lengths of the texts and the bytes they take in one block (0 when all are empty:
    // then no block is needed).
    struct Layout {
        std::array<std::size_t, N> lengths{};
        std::size_t size = 0;
    };

    ZTextPack() = default;
    // Keeps the texts in `storage`, which the owner provides with Measure(texts).size bytes and
    // keeps alive as long as this pack; with null storage the pack takes a heap block.
    ZTextPack(const Texts& texts, char* storage) {
        const Layout layout = Measure(texts);
        if (layout.size != 0) {
            m_owned = storage == nullptr;
            Fill(texts, layout, storage != nullptr ? storage : NewBlock(layout.size));
        }
    }
    // The same for texts already laid out back to back, each followed by a zero, text `i`
    // beginning at `starts[i]`, `size` bytes in all (the reader narrows attribute values into
    // this form); they are copied with one call.
    ZTextPack(const char* bytes, std::size_t size, const std::array<uint32_t, N>& starts, char* storage) {
        for (std::size_t i = 1; i < N; ++i) {
            m_start[i - 1] = starts[i];
        }
        if (size != 0) {
            char* block = storage != nullptr ? storage : NewBlock(size);
            m_owned = storage == nullptr;
            std::memcpy(block, bytes, size);
            m_data = block;
        }
    }
    // A copy always has a block of its own.
    ZTextPack(const ZTextPack& other) : m_start(other.m_start) {
        if (other.m_data != nullptr) {
            const std::size_t size = other.ByteSize();
            char* block = NewBlock(size);
            std::memcpy(block, other.m_data, size);
            m_data = block;
            m_owned = true;
        }
    }
    ZTextPack& operator=(const ZTextPack& other) {
        if (this != &other) {
            ZTextPack copy(other);
            Swap(copy);
        }
        return *this;
    }
    ZTextPack(ZTextPack&&) = delete;
    ZTextPack& operator=(ZTextPack&&) = delete;
    ~ZTextPack() { Release(); }

    // Pointer into the block, valid until the next change.
    const char* Get(std::size_t slot) const {
        if (m_data == nullptr) {
            return "";
        }
        return slot == 0 ? m_data : m_data + m_start[slot - 1];
    }

    // The new text may point into this pack: the old block lives until the new one is built.
    void Set(std::size_t slot, const char* text) {
        Texts texts;
        for (std::size_t i = 0; i < N; ++i) {
            texts[i] = Get(i);
        }
        texts[slot] = text;
        Assign(texts);
    }

    // Null texts are stored as empty texts. All empty texts need no block at all.
    void Assign(const Texts& texts) {
        const Layout layout = Measure(texts);
        ZTextPack built;
        if (layout.size != 0) {
            built.Fill(texts, layout, NewBlock(layout.size));
            built.m_owned = true;
        }
        Swap(built);
    }

    static Layout Measure(const Texts& texts) {
        Layout layout;
        std::size_t total = 0;
        bool allEmpty = true;
        for (std::size_t i = 0; i < N; ++i) {
            layout.lengths[i] = std::strlen(TextOrEmpty(texts[i]));
            allEmpty = allEmpty && layout.lengths[i] == 0;
            total += layout.lengths[i] + 1;
            if (total > UINT32_MAX) {
                throw std::length_error("texts of one item exceed 4 GiB");
            }
        }
        layout.size = allEmpty ? 0 : total;
        return layout;
    }

    // Bytes of the owner's storage that the texts still take (0 once they moved to a block of
    // the pack's own, or without texts).
    std::size_t StorageBytes() const { return m_owned ? 0 : ByteSize(); }

    // Bytes of the block in use (0 without one).
    std::size_t ByteSize() const {
        return m_data != nullptr ? static_cast<std::size_t>(Get(N - 1) - m_data) + std::strlen(Get(N - 1)) + 1
                                 : 0;
    }

private:
    static char* NewBlock(std::size_t size) { return static_cast<char*>(::operator new(size)); }

    void Release() noexcept {
        if (m_owned) {
            ::operator delete(const_cast<char*>(m_data));
        }
        m_data = nullptr;
        m_owned = false;
    }

    void Swap(ZTextPack& other) noexcept {
        std::swap(m_data, other.m_data);
        std::swap(m_start, other.m_start);
        std::swap(m_owned, other.m_owned);
    }

    // Writes the texts back to back into `storage` (layout.size bytes; none when all are empty).
    void Fill(const Texts& texts, const Layout& layout, char* storage) {
        if (layout.size == 0) {
            m_data = nullptr;
            m_start.fill(0);
            return;
        }
        std::size_t offset = 0;
        for (std::size_t i = 0; i < N; ++i) {
            const std::size_t length = layout.lengths[i];
            if (i > 0) {
                m_start[i - 1] = static_cast<uint32_t>(offset);
            }
            std::memcpy(storage + offset, TextOrEmpty(texts[i]), length);
            offset += length;
            storage[offset++] = '\0';
        }
        m_data = storage;
    }

    const char* m_data = nullptr;  // the block in use: the owner's storage or a block of its own
    // Where texts 1 to N-1 begin in the block; the first begins at its start.
    std::array<uint32_t, N - 1> m_start{};
    bool m_owned = false;  // the block is the pack's own heap block
};

// Makes an item of type T in `arena` (null: on the heap) with its texts in the bytes behind it
// (see MakeItemWithTexts): T's constructor receives (storage, texts, args...). T names the
// array of its texts TextList.
template <typename T, typename... Args>
ZItemPtr<T> MakeItemWithPack(ZModelArena* arena, const typename T::TextList& texts, Args&&... args) {
    constexpr std::size_t kCount = std::tuple_size<typename T::TextList>::value;
    return MakeItemWithTexts<T>(arena, ZTextPack<kCount>::Measure(texts).size, texts,
                                std::forward<Args>(args)...);
}

}  // namespace Korvel
