// One open XML element as the reader sees it: a name and a value, both narrow text.
#pragma once

namespace Korvel {

class IXmlElement {
public:
    virtual const char* GetName() const = 0;
    virtual const char* GetValue() const = 0;
    virtual ~IXmlElement() = default;
    virtual void SetName(const char* name) = 0;
    virtual void SetValue(const char* value) = 0;
};

}  // namespace Korvel
