#include "reader/ZFileInputSource.h"

#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>

namespace Korvel {

namespace {

class FileStream : public xercesc::BinInputStream {
public:
    explicit FileStream(Platform::InputFile& file) : file_(file) {}

    XMLFilePos curPos() const override { return static_cast<XMLFilePos>(file_.Position()); }

    // A read error ends the parse with the XML library's own exception for it, as when the
    // library read the file itself.
    XMLSize_t readBytes(XMLByte* const toFill, const XMLSize_t maxToRead) override {
        std::size_t count = 0;
        if (!file_.Read(toFill, maxToRead, count)) {
            ThrowXML(xercesc::XMLPlatformUtilsException, xercesc::XMLExcepts::File_CouldNotReadFromFile);
        }
        return count;
    }

    const XMLCh* getContentType() const override { return nullptr; }

private:
    Platform::InputFile& file_;
};

}  // namespace

ZFileInputSource::ZFileInputSource(Platform::InputFile& file, const XMLCh* systemId)
    : xercesc::InputSource(systemId), file_(file) {}

xercesc::BinInputStream* ZFileInputSource::makeStream() const {
    return new FileStream(file_);
}

}  // namespace Korvel
