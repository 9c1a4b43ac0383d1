#include "reader/ZXmlElement.h"

#include <utility>

namespace Korvel {

ZXmlElement::ZXmlElement(std::string name) : name_(std::move(name)) {}

ZXmlElement::~ZXmlElement() = default;

const char* ZXmlElement::GetName() const {
    return name_.c_str();
}

const char* ZXmlElement::GetValue() const {
    return value_.c_str();
}

void ZXmlElement::SetName(const char* name) {
    name_ = name != nullptr ? name : "";
}

void ZXmlElement::SetValue(const char* value) {
    value_ = value != nullptr ? value : "";
}

}  // namespace Korvel
