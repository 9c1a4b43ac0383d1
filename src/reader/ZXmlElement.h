// Element record of the generic frame: name and value as owned narrow strings.
#pragma once

#include "reader/IXmlElement.h"

#include <string>

namespace Korvel {

class ZXmlElement : public IXmlElement {
public:
    ZXmlElement() = default;
    explicit ZXmlElement(std::string name);
    ~ZXmlElement() override;

    const char* GetName() const override;
    const char* GetValue() const override;
    // A null text is stored as an empty one.
    void SetName(const char* name) override;
    void SetValue(const char* value) override;

    // The name as a string: comparing it with the next record's name then needs no strlen.
    const std::string& Name() const { return name_; }
    void ClearValue() { value_.clear(); }

private:
    std::string name_;
    std::string value_;
};

}  // namespace Korvel
