#include "JsonOutput.h"

#include "Console.h"
#include "Document.h"

namespace zekl {

std::string JsonText(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

void PrintJson(const Json& json) {
    WriteAll(stdout, JsonText(json));
}

void PrintResult(bool json, const Json& value, const std::string& text) {
    if (json) {
        PrintJson(value);
    } else {
        WriteAll(stdout, text);
    }
}

Json MessageJson(const Korvel::ReadMessage& message) {
    return {{"level", Korvel::ReportLevelName(message.level)}, {"text", OneLine(message.text)}};
}

Json TextOrNull(const std::string& text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

}  // namespace zekl
