#include "diff/ZDiffer.h"

#include "model/ModelUtils.h"
#include "model/ZItemPath.h"
#include "platform/CNumbers.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>
#include <unordered_map>

namespace Korvel {

namespace {

bool SameText(const char* a, const char* b) {
    return std::strcmp(a, b) == 0;
}

// The same number, NaN included (a document may say "nan" on both sides).
bool SameNumber(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

std::vector<std::string_view> SortedWords(const char* text) {
    std::vector<std::string_view> words;
    const char* at = text;
    while (*at != '\0') {
        while (*at == ' ' || *at == '\t' || *at == '\r' || *at == '\n') {
            ++at;
        }
        const char* begin = at;
        while (*at != '\0' && *at != ' ' && *at != '\t' && *at != '\r' && *at != '\n') {
            ++at;
        }
        if (at != begin) {
            words.emplace_back(begin, static_cast<std::size_t>(at - begin));
        }
    }
    std::sort(words.begin(), words.end());
    return words;
}

// The same words in any order and spacing.
bool SameSemantics(const char* a, const char* b) {
    return SameText(a, b) || SortedWords(a) == SortedWords(b);
}

// An image of a text or hex value is as long as its parameter, which a document can make
// gigabytes long; beyond this, values are compared as texts.
constexpr uint32_t kMaxImageBytes = 1u << 16;

// The same text, or values of one type and length with the same byte image ("0x22" and "34").
bool SameValue(const IParam& a, const IParam& b) {
    if (SameText(a.GetValue(), b.GetValue())) {
        return true;
    }
    const ParamDataType type = a.GetDataType();
    if (type != b.GetDataType() || a.GetByteLength() != b.GetByteLength() ||
        a.GetByteLength() > kMaxImageBytes) {
        return false;
    }
    ByteBuffer imageA;
    ByteBuffer imageB;
    return ModelUtils().ValueToBytes(a.GetValue(), type, a.GetByteLength(), imageA) &&
           ModelUtils().ValueToBytes(b.GetValue(), type, b.GetByteLength(), imageB) && imageA == imageB;
}

std::string KindName(uint32_t kind) {
    switch (static_cast<ConversionKind>(kind)) {
        case ConversionKind::Formula:
            return "formula";
        case ConversionKind::ValueTable:
            return "value table";
        case ConversionKind::Neither:
            return "neither";
        case ConversionKind::NotSet:
            return "not set";
    }
    return std::to_string(kind);
}

std::string ProtocolName(uint32_t protocol) {
    return protocol == ProtocolUds || protocol == ProtocolKwp ? ModelUtils().ProtocolToName(protocol)
                                                              : std::to_string(protocol);
}

// The first entry of each code, as the table is walked by index.
void NrcsByCode(const INrcContainer& nrcs, const INrcItem* (&byCode)[256]) {
    for (uint32_t i = 0; i < nrcs.GetCount(); ++i) {
        const INrcItem* item = nrcs.GetNrc(i);
        if (item != nullptr && byCode[item->GetCode()] == nullptr) {
            byCode[item->GetCode()] = item;
        }
    }
}

// The index of each entry of a code in the table.
void NrcIndexes(const INrcContainer& nrcs, uint32_t (&index)[256]) {
    std::fill(std::begin(index), std::end(index), InvalidIndex);
    for (uint32_t i = 0; i < nrcs.GetCount(); ++i) {
        const INrcItem* item = nrcs.GetNrc(i);
        if (item != nullptr && index[item->GetCode()] == InvalidIndex) {
            index[item->GetCode()] = i;
        }
    }
}

using ConversionIndex = std::unordered_map<std::string_view, std::pair<const IConversion*, uint32_t>>;

ConversionIndex IndexConversions(const IConversionContainer& conversions) {
    ConversionIndex index;
    index.reserve(conversions.GetCount());
    for (uint32_t i = 0; i < conversions.GetCount(); ++i) {
        if (const IConversion* conversion = conversions.GetConversion(i)) {
            index.emplace(conversion->GetId(), std::make_pair(conversion, i));
        }
    }
    return index;
}

// The position of each key in a container walked by index; `key` gives an item's key.
template <typename Get, typename Key>
std::unordered_map<std::string_view, uint32_t> Positions(uint32_t count, Get&& get, Key&& key) {
    std::unordered_map<std::string_view, uint32_t> positions;
    positions.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        if (const auto* item = get(i)) {
            positions.emplace(key(*item), i);
        }
    }
    return positions;
}

}  // namespace

ZDiffer::ZDiffer(const DiffOptions& options, std::vector<DiffEntry>& entries)
    : options_(options), entries_(entries) {}

void ZDiffer::Add(DiffChange change, const char* item, const ItemPath& path, const char* attribute,
                  std::string before, std::string after) {
    DiffEntry entry;
    entry.change = change;
    entry.item = item;
    entry.path = path;
    entry.attribute = attribute;
    entry.before = std::move(before);
    entry.after = std::move(after);
    entries_.push_back(std::move(entry));
}

// The items on a longest run of rising new positions keep their order; every other one moved.
void ZDiffer::ReportMoves(const char* item, const std::vector<Common>& common) {
    if (!options_.order || common.empty()) {
        return;
    }
    // Patience method: tails[k] is the index in `common` of the smallest last new position of a
    // rising run of length k + 1; previous[i] links a run back.
    std::vector<std::size_t> tails;
    std::vector<std::size_t> previous(common.size(), SIZE_MAX);
    for (std::size_t i = 0; i < common.size(); ++i) {
        const auto at = std::lower_bound(
            tails.begin(), tails.end(), common[i].after,
            [&common](std::size_t index, uint32_t after) { return common[index].after < after; });
        if (at != tails.begin()) {
            previous[i] = *(at - 1);
        }
        if (at == tails.end()) {
            tails.push_back(i);
        } else {
            *at = i;
        }
    }
    std::vector<bool> kept(common.size(), false);
    for (std::size_t i = tails.empty() ? SIZE_MAX : tails.back(); i != SIZE_MAX; i = previous[i]) {
        kept[i] = true;
    }
    for (std::size_t i = 0; i < common.size(); ++i) {
        if (!kept[i]) {
            Add(DiffChange::Moved, item, common[i].path, "position", std::to_string(common[i].before),
                std::to_string(common[i].after));
        }
    }
}

void ZDiffer::Run(const IEcu& before, const IEcu& after) {
    if (before.GetProtocol() != after.GetProtocol()) {
        Changed("protocol", ItemPath{}, "protocol", ProtocolName(before.GetProtocol()),
                ProtocolName(after.GetProtocol()));
    }
    CompareNrcs(before, after);
    CompareConversions(before, after);
    CompareInstances(before, after);
}

void ZDiffer::CompareNrcs(const IEcu& before, const IEcu& after) {
    const INrcItem* old[256] = {};
    const INrcItem* now[256] = {};
    NrcsByCode(*before.GetNrcContainer(), old);
    NrcsByCode(*after.GetNrcContainer(), now);
    for (unsigned code = 0; code < 256; ++code) {
        if (old[code] == nullptr && now[code] == nullptr) {
            continue;
        }
        ItemPath path;
        path.nrc = std::to_string(code);
        if (now[code] == nullptr) {
            Add(DiffChange::Removed, "nrc", path);
        } else if (old[code] == nullptr) {
            Add(DiffChange::Added, "nrc", path);
        } else if (!SameText(old[code]->GetText(), now[code]->GetText())) {
            Changed("nrc", path, "text", old[code]->GetText(), now[code]->GetText());
        }
    }
    if (options_.order) {
        uint32_t oldIndex[256];
        uint32_t newIndex[256];
        NrcIndexes(*before.GetNrcContainer(), oldIndex);
        NrcIndexes(*after.GetNrcContainer(), newIndex);
        std::vector<Common> common;
        for (uint32_t i = 0; i < before.GetNrcContainer()->GetCount(); ++i) {
            const INrcItem* item = before.GetNrcContainer()->GetNrc(i);
            if (item == nullptr || oldIndex[item->GetCode()] != i ||
                newIndex[item->GetCode()] == InvalidIndex) {
                continue;
            }
            ItemPath path;
            path.nrc = std::to_string(item->GetCode());
            common.push_back(Common{i, newIndex[item->GetCode()], path});
        }
        ReportMoves("nrc", common);
    }
}

void ZDiffer::CompareConversions(const IEcu& before, const IEcu& after) {
    const IConversionContainer& old = *before.GetConversionContainer();
    const IConversionContainer& now = *after.GetConversionContainer();
    const ConversionIndex oldIndex = IndexConversions(old);
    const ConversionIndex newIndex = IndexConversions(now);
    std::vector<Common> common;
    for (uint32_t i = 0; i < old.GetCount(); ++i) {
        const IConversion* conversion = old.GetConversion(i);
        if (conversion == nullptr) {
            continue;
        }
        ItemPath path;
        path.conversion = conversion->GetId();
        const auto found = newIndex.find(conversion->GetId());
        if (found == newIndex.end()) {
            Add(DiffChange::Removed, "conversion", path);
            continue;
        }
        CompareConversion(*conversion, *found->second.first, path);
        common.push_back(Common{i, found->second.second, path});
    }
    for (uint32_t i = 0; i < now.GetCount(); ++i) {
        const IConversion* conversion = now.GetConversion(i);
        if (conversion != nullptr && oldIndex.count(conversion->GetId()) == 0) {
            ItemPath path;
            path.conversion = conversion->GetId();
            Add(DiffChange::Added, "conversion", path);
        }
    }
    ReportMoves("conversion", common);
}

void ZDiffer::CompareConversion(const IConversion& before, const IConversion& after, const ItemPath& path) {
    if (before.GetType() != after.GetType()) {
        Changed("conversion", path, "kind", KindName(before.GetType()), KindName(after.GetType()));
    }
    if (!SameNumber(before.GetFactor(), after.GetFactor())) {
        Changed("conversion", path, "factor", Platform::ShortestDoubleText(before.GetFactor()),
                Platform::ShortestDoubleText(after.GetFactor()));
    }
    if (!SameNumber(before.GetOffset(), after.GetOffset())) {
        Changed("conversion", path, "offset", Platform::ShortestDoubleText(before.GetOffset()),
                Platform::ShortestDoubleText(after.GetOffset()));
    }
    if (before.GetTextTableSize() == 0 && after.GetTextTableSize() == 0) {
        return;
    }
    const auto entry = [](const IConversion& conversion) {
        return [&conversion](uint32_t i) { return conversion.GetTextTableElement(i); };
    };
    const auto value = [](const ITextTableElement& element) { return std::string_view(element.GetValue()); };
    const auto oldPositions = Positions(before.GetTextTableSize(), entry(before), value);
    const auto newPositions = Positions(after.GetTextTableSize(), entry(after), value);
    std::vector<Common> common;
    for (uint32_t i = 0; i < before.GetTextTableSize(); ++i) {
        const ITextTableElement* element = before.GetTextTableElement(i);
        if (element == nullptr) {
            continue;
        }
        ItemPath entryPath = path;
        entryPath.entry = element->GetValue();
        const auto found = newPositions.find(element->GetValue());
        if (found == newPositions.end()) {
            Add(DiffChange::Removed, "entry", entryPath);
            continue;
        }
        const ITextTableElement* other = after.GetTextTableElement(found->second);
        if (!SameText(element->GetText(), other->GetText())) {
            Changed("entry", entryPath, "text", element->GetText(), other->GetText());
        }
        common.push_back(Common{i, found->second, entryPath});
    }
    for (uint32_t i = 0; i < after.GetTextTableSize(); ++i) {
        const ITextTableElement* element = after.GetTextTableElement(i);
        if (element != nullptr && oldPositions.count(element->GetValue()) == 0) {
            ItemPath entryPath = path;
            entryPath.entry = element->GetValue();
            Add(DiffChange::Added, "entry", entryPath);
        }
    }
    ReportMoves("entry", common);
}

void ZDiffer::CompareInstances(const IEcu& before, const IEcu& after) {
    const IInstanceContainer& old = *before.GetInstanceContainer();
    const IInstanceContainer& now = *after.GetInstanceContainer();
    std::unordered_map<std::string_view, uint32_t> newPositions;
    if (options_.order) {
        newPositions = Positions(
            now.GetCount(), [&now](uint32_t i) { return now.GetInstance(i); },
            [](const IInstance& instance) { return std::string_view(instance.GetId()); });
    }
    std::vector<Common> common;
    for (uint32_t i = 0; i < old.GetCount(); ++i) {
        const IInstance* instance = old.GetInstance(i);
        if (instance == nullptr) {
            continue;
        }
        ItemPath path;
        path.instance = instance->GetId();
        const IInstance* other = now.GetInstance(instance->GetId());
        if (other == nullptr) {
            Add(DiffChange::Removed, "instance", path);
            continue;
        }
        CompareInstance(*instance, *other, path);
        if (options_.order) {
            const auto found = newPositions.find(instance->GetId());
            if (found != newPositions.end()) {
                common.push_back(Common{i, found->second, path});
            }
        }
    }
    for (uint32_t i = 0; i < now.GetCount(); ++i) {
        const IInstance* instance = now.GetInstance(i);
        if (instance != nullptr && old.GetInstance(instance->GetId()) == nullptr) {
            ItemPath path;
            path.instance = instance->GetId();
            Add(DiffChange::Added, "instance", path);
        }
    }
    ReportMoves("instance", common);
}

void ZDiffer::CompareInstance(const IInstance& before, const IInstance& after, const ItemPath& path) {
    ItemPath messagePath = path;
    messagePath.message = MessageElementName(MessageKindRequest);
    CompareMessage(before.GetRequest(), after.GetRequest(), messagePath);
    messagePath.message = MessageElementName(MessageKindPosResponse);
    CompareMessage(before.GetPosResponse(), after.GetPosResponse(), messagePath);
    messagePath.message = MessageElementName(MessageKindNegResponse);
    CompareMessage(before.GetNegResponse(), after.GetNegResponse(), messagePath);
}

void ZDiffer::CompareMessage(const IMessage* before, const IMessage* after, const ItemPath& path) {
    if (before == nullptr || after == nullptr) {
        if (before != nullptr) {
            Add(DiffChange::Removed, "message", path);
        } else if (after != nullptr) {
            Add(DiffChange::Added, "message", path);
        }
        return;
    }
    std::vector<Common> common;
    std::unordered_map<std::string_view, uint32_t> newPositions;
    if (options_.order) {
        newPositions = Positions(
            after->GetCount(), [after](uint32_t i) { return after->GetParam(static_cast<int>(i)); },
            [](const IParam& param) { return std::string_view(param.GetId()); });
    }
    for (uint32_t i = 0; i < before->GetCount(); ++i) {
        const IParam* param = before->GetParam(static_cast<int>(i));
        if (param == nullptr) {
            continue;
        }
        ItemPath paramPath = path;
        paramPath.parameter = param->GetId();
        const IParam* other = after->GetParam(param->GetId());
        if (other == nullptr) {
            Add(DiffChange::Removed, "parameter", paramPath);
            continue;
        }
        CompareParam(*param, *other, paramPath);
        if (options_.order) {
            const auto found = newPositions.find(param->GetId());
            if (found != newPositions.end()) {
                common.push_back(Common{i, found->second, paramPath});
            }
        }
    }
    for (uint32_t i = 0; i < after->GetCount(); ++i) {
        const IParam* param = after->GetParam(static_cast<int>(i));
        if (param != nullptr && before->GetParam(param->GetId()) == nullptr) {
            ItemPath paramPath = path;
            paramPath.parameter = param->GetId();
            Add(DiffChange::Added, "parameter", paramPath);
        }
    }
    ReportMoves("parameter", common);
}

void ZDiffer::CompareParam(const IParam& before, const IParam& after, const ItemPath& path) {
    if (before.GetBitPos() != after.GetBitPos()) {
        Changed("parameter", path, "bitPos", std::to_string(before.GetBitPos()),
                std::to_string(after.GetBitPos()));
    }
    if (before.GetBitLength() != after.GetBitLength()) {
        Changed("parameter", path, "bitLen", std::to_string(before.GetBitLength()),
                std::to_string(after.GetBitLength()));
    }
    if (!SameText(before.GetDataTypeName(), after.GetDataTypeName())) {
        Changed("parameter", path, "type", before.GetDataTypeName(), after.GetDataTypeName());
    }
    if (!SameText(before.GetUnit(), after.GetUnit())) {
        Changed("parameter", path, "unit", before.GetUnit(), after.GetUnit());
    }
    if (!SameValue(before, after)) {
        Changed("parameter", path, "value", before.GetValue(), after.GetValue());
    }
    if (!SameSemantics(before.GetSemantics(), after.GetSemantics())) {
        Changed("parameter", path, "semantics", before.GetSemantics(), after.GetSemantics());
    }
    if (!SameText(before.GetConvId(), after.GetConvId())) {
        Changed("parameter", path, "convId", before.GetConvId(), after.GetConvId());
    }
}

}  // namespace Korvel
