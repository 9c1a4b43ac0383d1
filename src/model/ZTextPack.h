// A fixed number of zero-terminated texts kept back to back in one heap block. Items of large
// documents hold many short texts; one block per item instead of one string object per text
// keeps a loaded model within a small multiple of the document's size.
#pragma once

#include "model/TextOrEmpty.h"
#include "model/ZModelMemory.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <utility>

namespace Korvel {

template <std::size_t N>
class ZTextPack {
public:
    using Texts = std::array<const char*, N>;

    ZTextPack() = default;
    explicit ZTextPack(const Texts& texts) { Assign(texts); }
    // The lengths of the texts and the bytes they take in one block (0 when all are empty:
    // then no block is needed).
    struct Layout {
        std::array<std::size_t, N> lengths{};
        std::size_t size = 0;
    };

    // Keeps the texts in `storage`, which the owner provides with layout.size bytes (the layout
    // of these texts) and keeps alive as long as this pack. A later change moves them to a
    // block of their own.
    ZTextPack(const Texts& texts, const Layout& layout, char* storage) { Fill(texts, layout, storage); }
    // Keeps texts that the owner has already written back to back into its storage, each
    // followed by a zero, text `i` beginning at `starts[i]`. The owner keeps that storage alive
    // as long as this pack.
    ZTextPack(const char* storage, const std::array<uint32_t, N>& starts)
        : m_data(storage), m_start(starts) {}
    ZTextPack(const ZTextPack& other) : m_start(other.m_start) {
        if (other.m_data != nullptr) {
            const std::size_t size = other.ByteSize();
            m_owned.reset(NewBlock(size));
            std::memcpy(m_owned.get(), other.m_data, size);
            m_data = m_owned.get();
        }
    }
    ZTextPack& operator=(const ZTextPack& other) {
        if (this != &other) {
            ZTextPack copy(other);
            Swap(copy);
        }
        return *this;
    }
    // Texts in storage of the owner are copied: that storage stays with the owner.
    ZTextPack(ZTextPack&& other) : m_start(other.m_start) {
        if (other.m_owned) {
            m_owned.swap(other.m_owned);
            m_data = m_owned.get();
        } else if (other.m_data != nullptr) {
            ZTextPack copy(other);
            Swap(copy);
        }
        other.m_data = nullptr;
        other.m_start.fill(0);
    }
    ZTextPack& operator=(ZTextPack&& other) {
        if (this != &other) {
            ZTextPack moved(std::move(other));
            Swap(moved);
        }
        return *this;
    }
    ~ZTextPack() = default;

    // Pointer into the block, valid until the next change.
    const char* Get(std::size_t slot) const { return m_data != nullptr ? m_data + m_start[slot] : ""; }

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
        if (layout.size == 0) {
            m_owned.reset();
            m_data = nullptr;
            m_start.fill(0);
            return;
        }
        ZTextPack built;
        built.m_owned.reset(NewBlock(layout.size));
        built.Fill(texts, layout, built.m_owned.get());
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

private:
    static char* NewBlock(std::size_t size) { return static_cast<char*>(ModelAllocate(size)); }

    std::size_t ByteSize() const { return m_start[N - 1] + std::strlen(Get(N - 1)) + 1; }

    void Swap(ZTextPack& other) noexcept {
        m_owned.swap(other.m_owned);
        std::swap(m_data, other.m_data);
        std::swap(m_start, other.m_start);
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
            m_start[i] = static_cast<uint32_t>(offset);
            std::memcpy(storage + offset, TextOrEmpty(texts[i]), length);
            offset += length;
            storage[offset++] = '\0';
        }
        m_data = storage;
    }

    std::unique_ptr<char, ZModelDeleter> m_owned;  // the block when the pack has its own
    const char* m_data = nullptr;                  // the block in use: m_owned or the owner's storage
    std::array<uint32_t, N> m_start{};
};

}  // namespace Korvel
