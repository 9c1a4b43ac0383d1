#include "writer/ZKLWriterImpl.h"

#include "platform/DebugOutput.h"
#include "platform/PageMemory.h"
#include "writer/WriterMessages.h"
#include "writer/ZSafeFileOutput.h"
#include "writer/ZStringOutputBuffer.h"
#include "writer/ZWriterConfig.h"
#include "writer/ZXmlWriter.h"

#include <algorithm>
#include <limits>
#include <new>

namespace Korvel {

namespace {

// Room for a document, from the item counts and on the generous side: the text is then
// allocated once instead of being copied at each doubling, and room that stays unused costs
// address space only, never touched memory. A longer document still grows as usual.
std::size_t EstimateLength(const IEcu& ecu) {
    constexpr std::size_t kFixed = 256;
    constexpr std::size_t kPerNrc = 128;
    constexpr std::size_t kPerInstance = 128;
    constexpr std::size_t kPerMessage = 64;
    constexpr std::size_t kPerParam = 192;
    constexpr std::size_t kPerConversion = 192;
    constexpr std::size_t kPerTableEntry = 128;
    const auto messageLength = [](const IMessage* message) {
        return message != nullptr ? kPerMessage + message->GetCount() * kPerParam : 0;
    };
    std::size_t total = kFixed + ecu.GetNrcContainer()->GetCount() * kPerNrc;
    const IInstanceContainer& instances = *ecu.GetInstanceContainer();
    const uint32_t instanceCount = instances.GetCount();
    for (uint32_t index = 0; index < instanceCount; ++index) {
        if (const IInstance* instance = instances.GetInstance(index)) {
            total += kPerInstance + messageLength(instance->GetRequest()) +
                     messageLength(instance->GetPosResponse()) + messageLength(instance->GetNegResponse());
        }
    }
    const IConversionContainer& conversions = *ecu.GetConversionContainer();
    const uint32_t conversionCount = conversions.GetCount();
    for (uint32_t index = 0; index < conversionCount; ++index) {
        if (const IConversion* conversion = conversions.GetConversion(index)) {
            total += kPerConversion + conversion->GetTextTableSize() * kPerTableEntry;
        }
    }
    return total;
}

// Builds the document in `text`; throws on failure. The text's pages are prefaulted as it
// grows (see ZStringOutputBuffer).
void WriteToText(const IEcu& ecu, std::string& text, const char* encoding, const IWriterConfig& config) {
    try {
        text.reserve(
            static_cast<std::size_t>(std::min<uint64_t>(EstimateLength(ecu), ZKLWriterImpl::kMaxLength)));
    } catch (const std::bad_alloc&) {
        // Without the room the text grows as it goes.
    }
    ZStringOutputBuffer buffer(text);
    std::ostream stream(&buffer);
    stream.exceptions(std::ios_base::badbit | std::ios_base::failbit);
    ZKLWriterImpl::WriteDocument(ecu, stream, encoding, config);
}

// Runs one write: any exception becomes a result of 0, the debug text and its reason in `error`.
template <typename Write>
uint32_t Guarded(std::string& error, Write&& write) {
    try {
        return write();
    } catch (const std::exception& exception) {
        error = exception.what();
    } catch (...) {
        error.clear();
    }
    Platform::DebugOutput(WriterMessages::kExceptionDuringWrite);
    if (error.empty()) {
        error = WriterMessages::kUnexpectedFailure;
    }
    return 0;
}

}  // namespace

void ZKLWriterImpl::WriteDocument(const IEcu& ecu, std::ostream& out, const char* encoding,
                                  const IWriterConfig& config) {
    ZXmlWriter writer(out, encoding, config);
    if (writer.IsReady()) {
        writer.WriteDeclaration(encoding);
    }
    ecu.Accept(writer);
    writer.CloseAll();
    out.flush();
    if (!out) {
        throw std::ios_base::failure("document write failed");
    }
}

uint32_t ZKLWriterImpl::WriteToBuffer(const IEcu& ecu, ByteBuffer& buffer, const char* encoding) {
    if (encoding == nullptr) {
        return 0;
    }
    try {
        buffer.clear();
        std::string text;
        WriteToText(ecu, text, encoding, ZWriterConfig::Instance());
        if (text.size() > m_maxLength) {
            Platform::DebugOutput(WriterMessages::kByteLengthOverflow);
            return 0;
        }
        if (buffer.capacity() < text.size()) {
            buffer.reserve(text.size());
            Platform::PrefaultPages(buffer.data(), text.size());
        }
        buffer.assign(text.begin(), text.end());
        return static_cast<uint32_t>(buffer.size());
    } catch (...) {
        Platform::DebugOutput(WriterMessages::kExceptionDuringWrite);
        return 0;
    }
}

uint32_t ZKLWriterImpl::WriteToString(const IEcu& ecu, std::string& text, const char* encoding) {
    std::string error;
    return WriteToString(ecu, text, encoding, ZWriterConfig::Instance(), error);
}

uint32_t ZKLWriterImpl::WriteToString(const IEcu& ecu, std::string& text, const char* encoding,
                                      const IWriterConfig& config, std::string& error) {
    error.clear();
    if (encoding == nullptr) {
        error = WriterMessages::kNoEncoding;
        return 0;
    }
    return Guarded(error, [&]() -> uint32_t {
        std::string document;
        WriteToText(ecu, document, encoding, config);
        // The length is returned as 32 bits, so a longer document is refused as in the buffer
        // form rather than reported with a wrong length.
        if (!FitsResult(document.size(), error)) {
            return 0;
        }
        text.swap(document);
        return static_cast<uint32_t>(text.size());
    });
}

uint32_t ZKLWriterImpl::WriteToFile(const IEcu& ecu, const char* fileName, const char* encoding) {
    std::string error;
    return WriteToFile(ecu, fileName, encoding, error);
}

uint32_t ZKLWriterImpl::WriteToFile(const IEcu& ecu, const char* fileName, const char* encoding,
                                    std::string& error) {
    return WriteToFile(ecu, fileName, encoding, ZWriterConfig::Instance(), error);
}

uint32_t ZKLWriterImpl::WriteToFile(const IEcu& ecu, const char* fileName, const char* encoding,
                                    const IWriterConfig& config, std::string& error) {
    error.clear();
    if (fileName == nullptr || encoding == nullptr) {
        error = fileName == nullptr ? WriterMessages::kNoFileName : WriterMessages::kNoEncoding;
        return 0;
    }
    return Guarded(error, [&]() -> uint32_t {
        // The target is replaced only by the finished document; on any failure the temporary
        // file goes and the old document stays.
        ZSafeFileOutput file(fileName);
        WriteDocument(ecu, file.Stream(), encoding, config);
        const uint64_t length = file.BytesWritten();
        if (!FitsResult(length, error)) {
            return 0;
        }
        file.Commit();
        return static_cast<uint32_t>(length);
    });
}

bool ZKLWriterImpl::FitsResult(uint64_t length, std::string& error) const {
    if (length <= m_maxLength) {
        return true;
    }
    Platform::DebugOutput(WriterMessages::kByteLengthOverflow);
    error = WriterMessages::kDocumentTooLong;
    return false;
}

IWriterConfig& ZKLWriterImpl::GetConfig() {
    return ZWriterConfig::Instance();
}

std::unique_ptr<IWriterConfig> ZKLWriterImpl::CreateConfig() {
    return std::make_unique<ZWriterConfig>();
}

}  // namespace Korvel
