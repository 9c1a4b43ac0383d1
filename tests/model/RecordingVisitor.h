// A visitor that records which operation each Accept reached, for the model tests.
#pragma once

#include <ZeKL/ZeKL.h>

#include <string>
#include <vector>

namespace Korvel {
namespace test {

class RecordingVisitor : public IConstModelItemVisitor {
public:
    std::vector<std::string> calls;
    const void* lastItem = nullptr;

    void VisitEcu(const IEcu& item) override { Record("Ecu", &item); }
    void VisitNrcContainer(const INrcContainer& item) override { Record("NrcContainer", &item); }
    void VisitNrcItem(const INrcItem& item) override { Record("NrcItem", &item); }
    void VisitConversionContainer(const IConversionContainer& item) override {
        Record("ConversionContainer", &item);
    }
    void VisitConversion(const IConversion& item) override { Record("Conversion", &item); }
    void VisitTextTable(const ITextTable& item) override { Record("TextTable", &item); }
    void VisitTextTableElement(const ITextTableElement& item) override { Record("TextTableElement", &item); }
    void VisitInstanceContainer(const IInstanceContainer& item) override {
        Record("InstanceContainer", &item);
    }
    void VisitInstance(const IInstance& item) override { Record("Instance", &item); }
    void VisitRequest(const IRequest& item) override { Record("Request", &item); }
    void VisitPosResponse(const IPosResponse& item) override { Record("PosResponse", &item); }
    void VisitNegResponse(const INegResponse& item) override { Record("NegResponse", &item); }
    void VisitParam(const IParam& item) override { Record("Param", &item); }
    void VisitNotSupported(const IModelItem& item) override { Record("NotSupported", &item); }

    // Accepts the item through both overloads and checks they reach the same operation.
    template <typename T>
    std::string AcceptBoth(T& item) {
        calls.clear();
        item.Accept(*this);
        static_cast<const T&>(item).Accept(*this);
        if (calls.size() != 2 || calls[0] != calls[1]) {
            return "mismatch";
        }
        return calls[0];
    }

private:
    void Record(const char* name, const void* item) {
        calls.emplace_back(name);
        lastItem = item;
    }
};

}  // namespace test
}  // namespace Korvel
