// Stream buffer that appends everything written to one std::string, so a document written to
// memory is built in place instead of being copied out of a string stream.
#pragma once

#include <streambuf>
#include <string>

namespace Korvel {

class ZStringOutputBuffer : public std::streambuf {
public:
    explicit ZStringOutputBuffer(std::string& text) : m_text(text) {}

protected:
    int_type overflow(int_type ch) override;
    std::streamsize xsputn(const char* data, std::streamsize count) override;

private:
    std::string& m_text;
};

}  // namespace Korvel
