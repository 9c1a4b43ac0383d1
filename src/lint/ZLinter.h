// The lint's rules over a model: one walk over the instances, their messages and parameters,
// then the conversions and the NRC table. With the positions of a read, each finding carries the
// line and column of its item's element.
#pragma once

#include "lint/LintRules.h"
#include "lint/ZItemPositions.h"

#include <ZeKL/IEcu.h>
#include <ZeKL/Lint.h>

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Korvel {

class ZLinter {
public:
    // `positions` may be null: the findings then have line and column 0.
    ZLinter(const IEcu& ecu, const ZItemPositions* positions, std::vector<LintFinding>& findings);

    // Appends the findings of every rule but "read" and "number-text" (see ZLintReader).
    void Run();

    // A finding of `rule` about `item` (for its position) at `path`.
    static LintFinding Make(ZRule rule, const ItemPath& path, std::string text, XmlPosition position);

private:
    void Add(ZRule rule, const IModelItem* item, const ItemPath& path, std::string text);

    void CheckInstance(const IInstance& instance);
    void CheckMessage(const IMessage& message, const ItemPath& messagePath);
    void CheckParam(const IParam& param, const ItemPath& path);
    void CheckTypeName(const IParam& param, const ItemPath& path);
    void CheckSemantics(const IParam& param, const ItemPath& path);
    void CheckLayout(const IMessage& message, const ItemPath& messagePath);
    void CheckRequestSid(const IInstance& instance, const ItemPath& instancePath);
    void CheckResponseSid(const IInstance& instance, const ItemPath& instancePath);
    void CheckNegativeResponse(const IInstance& instance, const ItemPath& instancePath);
    void NoteRequestConstants(const IInstance& instance, const ItemPath& instancePath);
    void CheckConversions();
    void CheckTableValues(const IConversion& conversion, const ItemPath& path);
    void CheckNrcTable();

    const IEcu& ecu_;
    const ZItemPositions* positions_;
    std::vector<LintFinding>& findings_;
    // The conversions by id, and the ids that parameters name.
    std::unordered_map<std::string_view, const IConversion*> conversions_;
    std::unordered_set<std::string_view> usedConversions_;
    // The constant bits of each request seen (mask and values), to the instance that has them.
    std::unordered_map<std::string, std::string> requestConstants_;
};

}  // namespace Korvel
