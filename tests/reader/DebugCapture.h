// Captures the library's debug output for the life of the object.
#pragma once

#include <ZeKL/DebugOutput.h>

#include <string>
#include <vector>

namespace ReaderTest {

class DebugCapture {
public:
    DebugCapture() { previous_ = Korvel::SetDebugOutputSink(&DebugCapture::Receive, this); }
    ~DebugCapture() { Korvel::SetDebugOutputSink(previous_, nullptr); }
    DebugCapture(const DebugCapture&) = delete;
    DebugCapture& operator=(const DebugCapture&) = delete;

    const std::vector<std::string>& Lines() const { return lines_; }

private:
    static void Receive(const char* text, void* context) {
        static_cast<DebugCapture*>(context)->lines_.emplace_back(text);
    }

    Korvel::DebugOutputSink previous_ = nullptr;
    std::vector<std::string> lines_;
};

}  // namespace ReaderTest
