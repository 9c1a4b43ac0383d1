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
    return {{"level", Korvel::ReportLevelName(message.level)},
            {"text", OneLine(message.text)},
            {"line", PlaceNumber(message.line)},
            {"column", PlaceNumber(message.column)},
            {"path", PathJson(message.path)}};
}

Json PathJson(const Korvel::ItemPath& path) {
    Json object = Json::object();
    const auto add = [&object](const char* name, const std::string& value) {
        if (!value.empty()) {
            object[name] = value;
        }
    };
    add("instance", path.instance);
    add("message", path.message);
    add("parameter", path.parameter);
    add("conversion", path.conversion);
    add("entry", path.entry);
    add("nrc", path.nrc);
    return object;
}

Json PlaceNumber(uint32_t number) {
    return number == 0 ? Json(nullptr) : Json(number);
}

Json TextOrNull(const std::string& text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

}  // namespace zekl
