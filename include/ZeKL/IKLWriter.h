// Writes ECU models as diagnostic description documents.
#pragma once

#include <ZeKL/IEcu.h>
#include <ZeKL/IWriterConfig.h>

#include <memory>
#include <string>

namespace Korvel {

// Encoding names: "utf-8", "Windows-1252", "iso-8859-1"; an empty name writes no
// declaration. Lines end with "\n".
class ZEKL_API IKLWriter {
public:
    virtual ~IKLWriter();
    // Bytes written into the emptied buffer, or 0 on failure (null encoding).
    virtual uint32_t WriteToBuffer(const IEcu& ecu, ByteBuffer& buffer, const char* encoding) = 0;
    // Length of the document that replaced `text`, or 0 on failure.
    virtual uint32_t WriteToString(const IEcu& ecu, std::string& text, const char* encoding) = 0;
    // Bytes written, or 0 on failure. The document goes to a temporary file beside the
    // target that replaces the target only when complete: a failed write leaves any
    // existing file as it was.
    virtual uint32_t WriteToFile(const IEcu& ecu, const char* fileName, const char* encoding) = 0;
    virtual IWriterConfig& GetConfig() = 0;

    // Addition: WriteToFile as above, also saying why a write failed. Result and file are as
    // in the form above; `error` is emptied on success and on failure receives one line: the
    // system's reason ("No space left on device", "Permission denied") or why the target was
    // refused ("not a regular file (a FIFO)": only regular files, also through a symbolic
    // link, are replaced).
    virtual uint32_t WriteToFile(const IEcu& ecu, const char* fileName, const char* encoding,
                                 std::string& error) = 0;

    // Addition: a new configuration with the defaults, owned by the caller and separate from
    // the process-wide one of GetConfig (see IWriterConfig.h); never null.
    virtual std::unique_ptr<IWriterConfig> CreateConfig() = 0;
    // Addition: WriteToString with `config` instead of the process-wide configuration. Result
    // and `text` as there (`text` is left alone on failure); `error` as for WriteToFile, also
    // naming the item when `config` refuses a character the encoding cannot carry.
    virtual uint32_t WriteToString(const IEcu& ecu, std::string& text, const char* encoding,
                                   const IWriterConfig& config, std::string& error) = 0;
    // Addition: WriteToFile with `config` instead of the process-wide configuration; result,
    // file and `error` as in the form with `error`.
    virtual uint32_t WriteToFile(const IEcu& ecu, const char* fileName, const char* encoding,
                                 const IWriterConfig& config, std::string& error) = 0;
};

}  // namespace Korvel
