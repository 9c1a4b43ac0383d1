#include "reader/ZKLXmlParserUtilsFactory.h"

#include "reader/ZKLXmlElementStack.h"

namespace Korvel {

ZKLXmlParserUtilsFactory::ZKLXmlParserUtilsFactory() = default;

ZKLXmlParserUtilsFactory::~ZKLXmlParserUtilsFactory() = default;

IXmlElementStack* ZKLXmlParserUtilsFactory::CreateElementStack() {
    return new ZKLXmlElementStack();
}

void ZKLXmlParserUtilsFactory::DestroyElementStack(IXmlElementStack*& stack) {
    delete stack;
    stack = nullptr;
}

}  // namespace Korvel
