// Every fixed text the reader reports, in one place, so that the code and its tests use the
// same constants. Several texts carry misspellings, doubled words or a trailing line feed;
// callers filter and compare on these exact texts, so they are kept byte for byte.
#pragma once

#include <ZeKL/Types.h>

#include <string>

namespace Korvel::ReaderMessages {

// Reporting sink.

// The name of a report level ("FATAL" ... "DEBUG"); empty for any other number.
inline const char* LevelName(int32_t level) {
    switch (level) {
        case ReportLevelFatal:
            return "FATAL";
        case ReportLevelError:
            return "ERROR";
        case ReportLevelWarn:
            return "WARN";
        case ReportLevelInfo:
            return "INFO";
        case ReportLevelDebug:
            return "DEBUG";
        default:
            return "";
    }
}
// The last kept line of a collector that left texts out.
inline std::string LeftOutText(uint64_t leftOut, uint32_t kept) {
    return "... " + std::to_string(leftOut) + " more message(s) left out: only the first " +
           std::to_string(kept) + " are kept";
}

inline constexpr char kLevelSeparator[] = ": ";
inline constexpr char kLineEnd[] = "\n";

// SAX frame: argument checks.
inline constexpr char kFileNameNull[] = "The passed filename is not valid (NULL)!";
inline constexpr char kFileNameEmpty[] = "The passed filename name is empty!";
inline constexpr char kArgumentsInvalid[] = "The passed arguments are not valid!\n";
inline constexpr char kStreamNull[] = "The passed ipStream is not valid (NULL)!";
// Names the stream name although the data is tested; kept as callers know it.
inline constexpr char kStreamEmpty[] = "The passed stream name is empty!";
inline constexpr char kNotInitialized[] = "The parser was not correctly initialized!\n";

// SAX frame: exceptions.
inline constexpr char kXmlExceptionWhileParsing[] = "XML Exception while parsing file: ";
inline constexpr char kUnexpectedException[] = "Unexpected Exception while parsing file!\n";
inline constexpr char kInitXmlException[] = "Exception (XERCES XMLException) during initialization: %s!\n";
inline constexpr char kInitUnexpected[] = "Exception of unexpected type during initialization!\n";
inline constexpr char kProbeXmlExceptionBegin[] =
    "XML Exception (XERCES XMLException) while tried to get encoding of the file '";
inline constexpr char kProbeXmlExceptionMiddle[] = "': ";
inline constexpr char kProbeUnexpectedBegin[] =
    "Exception of unexpected type while tried to get encoding of the file '";
inline constexpr char kProbeUnexpectedEnd[] = "'!\n";

// SAX frame: position suffix of parse errors, and the fallback when no sink is set.
inline constexpr char kLinePrefix[] = " [Line ";
inline constexpr char kColumnPrefix[] = ", Column ";
inline constexpr char kPositionEnd[] = "]";
inline constexpr char kFallbackError[] = "ERROR: ";
inline constexpr char kFallbackFatal[] = "FATAL ERROR: ";

// SAX frame: system ids of memory input.
inline constexpr char kMemorySystemId[] = "XML Memory Stream";
inline constexpr char kTextSystemId[] = "test";

// SAX frame: hardening (see ReaderLimits.h).
inline constexpr char kDepthLimitBegin[] = "The document nests elements deeper than ";
inline constexpr char kDepthLimitEnd[] = " levels!";
inline constexpr char kExpansionLimitBegin[] = "The document expands to more text than its ";
inline constexpr char kExpansionLimitEnd[] = " bytes hold!";
inline constexpr char kEntityBegin[] = "The document declares the entity '";
inline constexpr char kParameterEntityBegin[] = "The document declares the parameter entity '";
inline constexpr char kEntityEnd[] = "'; entity declarations are refused!";
inline constexpr char kNoRegularFileBegin[] = "The passed filename names no regular file: '";
inline constexpr char kNoRegularFileEnd[] = "'!";
inline constexpr char kCannotOpenFileBegin[] = "The passed file could not be opened: '";
inline constexpr char kCannotOpenFileEnd[] = "'!";
inline constexpr char kTextTooLongBegin[] = "The passed text is too long to be read: ";
inline constexpr char kTextTooLongEnd[] = " bytes, at most 4294967295 can be!";

// Dispatch.
inline constexpr char kUnknownTagBegin[] = "ZXmlParser::startElement >> Unknown tag '";
inline constexpr char kUnknownTagEnd[] = "'";

// Parse summary; both numbers are the error count and "warnigns" is spelt so on purpose.
inline constexpr char kSummaryBegin[] = "Parsing result: ";
inline constexpr char kSummarySuccess[] = "success";
inline constexpr char kSummaryFailed[] = "failed";
inline constexpr char kSummaryErrors[] = " errors, ";
inline constexpr char kSummaryWarnings[] = "warnigns";
inline constexpr char kSummaryNoParser[] = "ERROR: No parser available!\n";

// Handler base.
inline constexpr char kEmptyElementBegin[] =
    "WARNING: Adding empty ZKLXmlElement to buffer (used by XML stack), because no KL item could be created "
    "for "
    "the current '";
inline constexpr char kEmptyElementEnd[] = "' XML element!";
inline constexpr char kByteValueBegin[] = "TryGetValue >> Couldn't convert attribute #";
inline constexpr char kByteValueMiddle[] = " to BYTE, because the the configured value ('";
inline constexpr char kByteValueTooSmall[] = "') is to small!";
inline constexpr char kByteValueTooBig[] = "') is to big!";

// Open, close and count texts of one tag.
struct TagTexts {
    const char* open;
    const char* close;
    const char* count;
};

inline constexpr TagTexts kEcuTexts{"OpenTag >> ECU element", "CloseTag >> ECU element",
                                    "CloseTag >> ECU element: Different count of open and close tags found!"};
inline constexpr TagTexts kNegativeResponseCodesTexts{
    "OpenTag >> NEGATIVE_RESPONSE_CODES element", "CloseTag >> NEGATIVE_RESPONSE_CODES element",
    "CloseTag >> NEGATIVE_RESPONSE_CODES element: Different count of open and close tags found!"};
inline constexpr TagTexts kInstanceTexts{
    "OpenTag >> INSTANCE element", "CloseTag >> INSTANCE element",
    "CloseTag >> INSTANCE element: Different count of open and close tags found!"};
inline constexpr TagTexts kRequestTexts{
    "OpenTag >> REQUEST element", "CloseTag >> REQUEST element",
    "CloseTag >> REQUEST element: Different count of open and close tags found!"};
inline constexpr TagTexts kResponseTexts{
    "OpenTag >> RESPONSE element", "CloseTag >> RESPONSE element",
    "CloseTag >> RESPONSE element: Different count of open and close tags found!"};
// The close text alone ends in a line feed; kept as it always was.
inline constexpr TagTexts kNegativeResponseTexts{
    "OpenTag >> NEGATIVE_RESPONSE element", "CloseTag >> NEGATIVE_RESPONSE element\n",
    "CloseTag >> NEGATIVE_RESPONSE element: Different count of open and close tags found!"};
inline constexpr TagTexts kParameterTexts{
    "OpenTag >> PARAMETER element", "CloseTag >> PARAMETER element",
    "CloseTag >> PARAMETER element: Different count of open and close tags found!"};
inline constexpr TagTexts kConversionTexts{
    "OpenTag >> CONVERSION element", "CloseTag >> CONVERSION element",
    "CloseTag >> CONVERSION element: Different count of open and close tags found!"};
inline constexpr TagTexts kMapTexts{"OpenTag >> MAP element", "CloseTag >> MAP element",
                                    "CloseTag >> MAP element: Different count of open and close tags found!"};

// INSTANCE.
inline constexpr char kInstanceNoId[] =
    "OpenTag >> INSTANCE element: Couldn't create a DiagServiceInstance for current element because no ID is "
    "configured!";
inline constexpr char kInstanceAddFailedBegin[] =
    "OpenTag >> INSTANCE element: Couldn't add DiagServiceInstance with id='";
inline constexpr char kInstanceAddFailedEnd[] = "'!";
inline constexpr char kInstanceCloseNoInstance[] =
    "CloseTag >> INSTANCE element: The top element on the XmlElement stack does not contain an IInstance "
    "item!";

// REQUEST, RESPONSE, NEGATIVE_RESPONSE ("dose" in the RESPONSE text is part of it).
inline constexpr char kRequestNoInstance[] =
    "OpenTag >> REQUEST element: The top element on the XmlElement stack does not reference an IInstance "
    "item!";
inline constexpr char kResponseNoInstance[] =
    "OpenTag >> RESPONSE element: The top element on the XmlElement stack dose not reference an IInstance "
    "item!";
inline constexpr char kNegativeResponseNoInstance[] =
    "OpenTag >> NEGATIVE_RESPONSE element: The top element on the XmlElement stack does not reference an "
    "IInstance item!";

// PARAMETER.
inline constexpr char kParameterNoMessage[] =
    "OpenTag >> PARAMETER element: The top element on the XmlElement stack dose not reference a IMessage "
    "item!";
inline constexpr char kParameterUsedBegin[] = "OpenTag >> PARAMETER element: Couldn't add IParam with id='";
inline constexpr char kParameterUsedEnd[] = "', because the ID is already used!";
inline constexpr char kParameterMissingBegin[] =
    "OpenTag >> PARAMETER element: Not all required attributes of param with id='";
inline constexpr char kParameterMissingMiddle[] = "' are available! ";
inline constexpr char kParameterMissingList[] = "Invalid or missing attribute(s): ";

// CONVERSION.
inline constexpr char kConversionNameFailedBegin[] =
    "OpenTag >> CONVERSION element: TryGetName failed for attribute #";
inline constexpr char kConversionMissing[] =
    "OpenTag >> CONVERSION element: Couldn't create IConversion, because not all required attributes were "
    "available!";
inline constexpr char kConversionUsedBegin[] =
    "OpenTag >> CONVERSION element: Couldn't add IConversion with id='";
inline constexpr char kConversionUsedEnd[] = "', because the ID is already used!";

// MAP ("processsed" is spelt so on purpose).
inline constexpr char kMapNameFailedBegin[] = "OpenTag >> MAP element: TryGetName failed for attribute #";
inline constexpr char kNameFailedEnd[] = "!";
inline constexpr char kMapMissing[] = "OpenTag >> MAP element: Not all required attributes are available!";
inline constexpr char kMapNrcUsedBegin[] = "OpenTag >> MAP element: Couldn't add INrcItem with nrc='";
inline constexpr char kMapNrcUsedEnd[] = "', because the NRC is already used!";
inline constexpr char kMapEmptyVal[] =
    "OpenTag >> MAP element: The 'val' attribute is empty so no TextTableElement could be created!";
inline constexpr char kMapNoConversion[] =
    "OpenTag >> MAP element: The top element on the XmlElement stack dose not reference a IConversion item!";
inline constexpr char kMapValueUsedBegin[] = "OpenTag >> The current processsed MAP (val='";
inline constexpr char kMapValueUsedMiddle[] = "', text='";
inline constexpr char kMapValueUsedEnd[] = "') couldn't be added -> check if the value is unique!";

}  // namespace Korvel::ReaderMessages
