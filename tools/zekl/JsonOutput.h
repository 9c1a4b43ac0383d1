// The JSON output of the commands (--json), one documented schema for all: docs/json.md.
#pragma once

#include <ZeKL/ZeKL.h>

#include <nlohmann/json.hpp>

#include <string>

namespace zekl {

using Json = nlohmann::ordered_json;

// The text for JSON output, two blanks of indentation and a final line end. Invalid UTF-8 in
// texts taken from documents or messages is replaced, not refused.
std::string JsonText(const Json& json);

// Writes the JSON document on standard output.
void PrintJson(const Json& json);
// The result of a command on standard output: as JSON (--json) or as the text for people.
void PrintResult(bool json, const Json& value, const std::string& text);

// A message of a read: {"level": "ERROR", "text": "...", "line": 12, "column": 3, "path": {...}};
// line and column null when the message concerns no place.
Json MessageJson(const Korvel::ReadMessage& message);

// The id path of an item: {"instance": ..., "message": ..., "parameter": ..., "conversion":
// ..., "entry": ..., "nrc": ...}, the empty parts left out.
Json PathJson(const Korvel::ItemPath& path);

// A line or column of a place, or null for 0 (no place).
Json PlaceNumber(uint32_t number);

// A text, or null when it is empty.
Json TextOrNull(const std::string& text);

}  // namespace zekl
