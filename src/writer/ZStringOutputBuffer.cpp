#include "writer/ZStringOutputBuffer.h"

namespace Korvel {

ZStringOutputBuffer::int_type ZStringOutputBuffer::overflow(int_type ch) {
    if (!traits_type::eq_int_type(ch, traits_type::eof())) {
        m_text.push_back(traits_type::to_char_type(ch));
    }
    return traits_type::not_eof(ch);
}

std::streamsize ZStringOutputBuffer::xsputn(const char* data, std::streamsize count) {
    m_text.append(data, static_cast<std::size_t>(count));
    return count;
}

}  // namespace Korvel
