// The XML library's input for a file that the platform layer has already opened and found to be
// a regular file: the parser reads through that handle and never opens the path itself, so
// nothing can swap the file between the check and the read.
#pragma once

#include "platform/File.h"

#include <xercesc/sax/InputSource.hpp>

namespace Korvel {

class ZFileInputSource : public xercesc::InputSource {
public:
    // `file` must be open and outlive the source and every stream it makes; `systemId` names
    // the document in the XML library's messages.
    ZFileInputSource(Platform::InputFile& file, const XMLCh* systemId);

    // A stream over the file from its current position; the XML library adopts it.
    xercesc::BinInputStream* makeStream() const override;

private:
    Platform::InputFile& file_;
};

}  // namespace Korvel
