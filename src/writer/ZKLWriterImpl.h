// The writer front: writes one ECU model to a byte buffer, a string or a file. It holds no
// state; each call builds its own stream and XML writer.
#pragma once

#include <ZeKL/IKLWriter.h>

#include <cstdint>
#include <ostream>

namespace Korvel {

class ZKLWriterImpl : public IKLWriter {
public:
    // Results are 32-bit lengths, so a longer document is refused ("Byte Length overflow!").
    static constexpr uint64_t kMaxLength = UINT32_MAX;

    // `maxLength` below kMaxLength lets a test reach the refusal of long documents with a
    // small one.
    explicit ZKLWriterImpl(uint64_t maxLength = kMaxLength) : m_maxLength(maxLength) {}

    uint32_t WriteToBuffer(const IEcu& ecu, ByteBuffer& buffer, const char* encoding) override;
    uint32_t WriteToString(const IEcu& ecu, std::string& text, const char* encoding) override;
    uint32_t WriteToFile(const IEcu& ecu, const char* fileName, const char* encoding) override;
    IWriterConfig& GetConfig() override;
    uint32_t WriteToFile(const IEcu& ecu, const char* fileName, const char* encoding,
                         std::string& error) override;
    std::unique_ptr<IWriterConfig> CreateConfig() override;
    uint32_t WriteToString(const IEcu& ecu, std::string& text, const char* encoding,
                           const IWriterConfig& config, std::string& error) override;
    uint32_t WriteToFile(const IEcu& ecu, const char* fileName, const char* encoding,
                         const IWriterConfig& config, std::string& error) override;

    // Writes the whole document of `ecu` on `out`: the declaration when `encoding` is not
    // empty, then the ECU with every open element closed. Throws on a failure of the stream
    // or of a conversion; a stream that fails stops the write at the next line.
    static void WriteDocument(const IEcu& ecu, std::ostream& out, const char* encoding,
                              const IWriterConfig& config);

private:
    // True when a document of `length` bytes can be reported; else the debug text, `error`
    // and false.
    bool FitsResult(uint64_t length, std::string& error) const;

    uint64_t m_maxLength;
};

}  // namespace Korvel
