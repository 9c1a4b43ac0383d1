#include "writer/ZSafeFileOutput.h"

#include <streambuf>

namespace Korvel {

// Large buffered writes straight to the temporary file: no flush until the buffer is full.
class ZSafeFileOutput::Buffer : public std::streambuf {
public:
    explicit Buffer(Platform::ReplacingFile& file) : file_(file), data_(new char[kSize]) {
        setp(data_.get(), data_.get() + kSize);
    }

    uint64_t Pending() const { return static_cast<uint64_t>(pptr() - pbase()); }

    void Flush() {
        const std::size_t size = static_cast<std::size_t>(pptr() - pbase());
        setp(data_.get(), data_.get() + kSize);
        if (size > 0 && !file_.Write(data_.get(), size)) {
            throw FileWriteError(file_.Reason());
        }
    }

protected:
    int_type overflow(int_type ch) override {
        Flush();
        if (!traits_type::eq_int_type(ch, traits_type::eof())) {
            *pptr() = traits_type::to_char_type(ch);
            pbump(1);
        }
        return traits_type::not_eof(ch);
    }

    int sync() override {
        Flush();
        return 0;
    }

private:
    static constexpr std::size_t kSize = std::size_t{1} << 20;
    Platform::ReplacingFile& file_;
    std::unique_ptr<char[]> data_;
};

ZSafeFileOutput::ZSafeFileOutput(const std::string& fileName) : stream_(nullptr) {
    if (fileName.empty()) {
        throw std::invalid_argument("empty file name");
    }
    // The buffer before the file: when there is no memory for it, nothing has been created.
    buffer_ = std::make_unique<Buffer>(file_);
    if (!file_.Open(fileName.c_str())) {
        throw FileWriteError(file_.Reason());
    }
    stream_.rdbuf(buffer_.get());
    stream_.exceptions(std::ios_base::badbit | std::ios_base::failbit);
}

ZSafeFileOutput::~ZSafeFileOutput() = default;

uint64_t ZSafeFileOutput::BytesWritten() const {
    return file_.BytesWritten() + (buffer_ ? buffer_->Pending() : 0);
}

void ZSafeFileOutput::Commit() {
    try {
        buffer_->Flush();
    } catch (...) {
        file_.Discard();
        throw;
    }
    if (!file_.Commit()) {
        throw FileWriteError(file_.Reason());
    }
}

}  // namespace Korvel
