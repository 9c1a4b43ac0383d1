// What the codec commands (decode, encode, show --layout) share: hex input, the names of
// message kinds, and the text and JSON forms of decoded values.
#pragma once

#include <ZeKL/ZeKL.h>

#include <memory>
#include <string>

#include "Cli.h"
#include "JsonOutput.h"

namespace zekl {

// Hex bytes with or without blanks ("62 01 00", "620100", "0x62 0x01"): groups of an even
// number of digits, or of one digit for one byte. False with a reason for anything else.
bool ParseHexMessage(const std::string& text, Korvel::ByteBuffer& bytes, std::string& reason);

// "request", "response", "negative response" (and "" for any other kind).
std::string KindName(uint32_t kind);
// The short form used in JSON: "request", "response", "negative".
std::string KindKey(uint32_t kind);
// The message of an instance that --response and --negative choose.
struct MessageChoice {
    bool response = false;
    bool negative = false;
    // The kind chosen: the request when neither is given.
    uint32_t Kind() const;
};
// Declares --response and --negative, which exclude each other; both need `needs` when given.
void AddMessageChoice(CLI::App& app, MessageChoice& choice, CLI::Option* needs = nullptr);

// The shortest text that reads back as the same double.
std::string ShortestReal(double value);

// A physical number as people read it: 15 significant digits, so that the rounding noise of
// a factor (0.1 x 123 = 12.300000000000001) does not show.
std::string PhysicalNumber(double value);

// Cells of the decode table.
std::string RawCell(const Korvel::DecodedParam& param);
std::string PhysicalCell(const Korvel::DecodedParam& param);

// One decoded message as JSON (docs/json.md).
Json DecodedJson(const std::string& input, const Korvel::DecodedMessage& message, bool recognised);

class Document;
// The codec of the document's ECU; throws Failure("cannot <purpose> with NAME: out of memory").
std::unique_ptr<Korvel::ICodec> CompileCodec(Document& document, const char* purpose);

}  // namespace zekl
