// Makes the reader's element stack (ZKLXmlElementStack).
#pragma once

#include "reader/IXmlParserUtilsFactory.h"

namespace Korvel {

class ZKLXmlParserUtilsFactory : public IXmlParserUtilsFactory {
public:
    ZKLXmlParserUtilsFactory();
    ~ZKLXmlParserUtilsFactory() override;
    IXmlElementStack* CreateElementStack() override;
    void DestroyElementStack(IXmlElementStack*& stack) override;
};

}  // namespace Korvel
