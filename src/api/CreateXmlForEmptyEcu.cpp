#include <ZeKL/Exports.h>

#include <algorithm>
#include <string>

namespace {

// Callers keep the returned pointer until their next call and some compare it between
// calls, so the text lives in one string whose storage is reserved for the longest document
// up front: each call replaces the characters in place and the pointer never changes.
std::string MakeDocumentStorage() {
    const Korvel::IDataModelUtils& utils = Korvel::GetDataModelUtils();
    const std::size_t longest = std::max(utils.CreateXmlForEmptyEcu(Korvel::ProtocolUds, true).size(),
                                         utils.CreateXmlForEmptyEcu(Korvel::ProtocolKwp, true).size());
    std::string storage;
    storage.reserve(longest);
    return storage;
}

}  // namespace

// Protocols from 2 upward have no document and get a constant empty text; the comparison is
// signed on purpose, so negative values still produce a UDS document.
extern "C" const char* CreateXmlForEmptyEcu(int32_t protocol, int32_t withNrcTable) {
    static std::string document = MakeDocumentStorage();
    if (protocol >= 2) {
        return "";
    }
    const std::string text =
        Korvel::GetDataModelUtils().CreateXmlForEmptyEcu(static_cast<uint32_t>(protocol), withNrcTable != 0);
    // Copy the characters (a move would hand over the temporary's storage and the pointer).
    document.assign(text.data(), text.size());
    return document.c_str();
}
