#include "writer/ZStringOutputBuffer.h"

#include "platform/PageMemory.h"

#include <algorithm>

namespace Korvel {

ZStringOutputBuffer::int_type ZStringOutputBuffer::overflow(int_type ch) {
    if (!traits_type::eq_int_type(ch, traits_type::eof())) {
        Prepare(1);
        m_text.push_back(traits_type::to_char_type(ch));
    }
    return traits_type::not_eof(ch);
}

std::streamsize ZStringOutputBuffer::xsputn(const char* data, std::streamsize count) {
    Prepare(static_cast<std::size_t>(count));
    m_text.append(data, static_cast<std::size_t>(count));
    return count;
}

// Only the room the text already has is prefaulted: a text that grows moves to a new block,
// whose first part its copy touches anyway.
void ZStringOutputBuffer::PrepareMore(std::size_t count) {
    if (m_text.data() != m_block) {
        m_block = m_text.data();
        m_prepared = m_text.size();
    }
    const std::size_t end = m_text.size() + count;
    const std::size_t capacity = m_text.capacity();
    if (end > capacity || end <= m_prepared) {
        return;
    }
    const std::size_t target = std::min((end + kPrefaultStep - 1) / kPrefaultStep * kPrefaultStep, capacity);
    Platform::PrefaultPages(m_text.data() + m_prepared, target - m_prepared);
    m_prepared = target;
}

}  // namespace Korvel
