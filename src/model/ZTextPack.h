// A fixed number of zero-terminated texts kept back to back in one heap block. Items of large
// documents hold many short texts; one block per item instead of one string object per text
// keeps a loaded model within a small multiple of the document's size.
#pragma once

#include "model/TextOrEmpty.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace Korvel {

template <std::size_t N>
class ZTextPack {
public:
    using Texts = std::array<const char*, N>;

    ZTextPack() = default;
    explicit ZTextPack(const Texts& texts) { Assign(texts); }
    ZTextPack(const ZTextPack& other) : m_start(other.m_start) {
        if (other.m_data) {
            const std::size_t size = other.ByteSize();
            m_data.reset(new char[size]);
            std::memcpy(m_data.get(), other.m_data.get(), size);
        }
    }
    ZTextPack& operator=(const ZTextPack& other) {
        if (this != &other) {
            ZTextPack copy(other);
            m_data.swap(copy.m_data);
            m_start = copy.m_start;
        }
        return *this;
    }
    ZTextPack(ZTextPack&&) noexcept = default;
    ZTextPack& operator=(ZTextPack&&) noexcept = default;
    ~ZTextPack() = default;

    // Pointer into the block, valid until the next change.
    const char* Get(std::size_t slot) const { return m_data ? m_data.get() + m_start[slot] : ""; }

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
        std::array<std::size_t, N> lengths{};
        std::size_t total = 0;
        bool allEmpty = true;
        for (std::size_t i = 0; i < N; ++i) {
            lengths[i] = std::strlen(TextOrEmpty(texts[i]));
            allEmpty = allEmpty && lengths[i] == 0;
            total += lengths[i] + 1;
            if (total > UINT32_MAX) {
                throw std::length_error("texts of one item exceed 4 GiB");
            }
        }
        if (allEmpty) {
            m_data.reset();
            m_start.fill(0);
            return;
        }
        std::unique_ptr<char[]> data(new char[total]);
        std::array<uint32_t, N> start{};
        std::size_t offset = 0;
        for (std::size_t i = 0; i < N; ++i) {
            start[i] = static_cast<uint32_t>(offset);
            std::memcpy(data.get() + offset, TextOrEmpty(texts[i]), lengths[i]);
            offset += lengths[i];
            data[offset++] = '\0';
        }
        m_data.swap(data);
        m_start = start;
    }

private:
    std::size_t ByteSize() const { return m_start[N - 1] + std::strlen(Get(N - 1)) + 1; }

    std::unique_ptr<char[]> m_data;
    std::array<uint32_t, N> m_start{};
};

}  // namespace Korvel
