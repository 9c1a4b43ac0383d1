// Stream buffer that appends everything written to one std::string, so a document written to
// memory is built in place instead of being copied out of a string stream.
#pragma once

#include <cstddef>
#include <streambuf>
#include <string>

namespace Korvel {

class ZStringOutputBuffer : public std::streambuf {
public:
    explicit ZStringOutputBuffer(std::string& text) : m_text(text) {}

    // The text is prefaulted in steps of this many bytes ahead of what is written.
    static constexpr std::size_t kPrefaultStep = std::size_t{256} << 10;

protected:
    int_type overflow(int_type ch) override;
    std::streamsize xsputn(const char* data, std::streamsize count) override;

private:
    // Has the pages that the next `count` bytes go to provided in one system call per step
    // rather than one page fault per page (see platform/PageMemory.h).
    void Prepare(std::size_t count) {
        if (m_text.size() + count > m_prepared || m_text.data() != m_block) {
            PrepareMore(count);
        }
    }
    void PrepareMore(std::size_t count);

    std::string& m_text;
    const char* m_block = nullptr;  // the text's block that m_prepared counts in
    std::size_t m_prepared = 0;     // bytes of the block prefaulted
};

}  // namespace Korvel
