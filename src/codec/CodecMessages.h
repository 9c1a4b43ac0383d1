// The codec's fixed texts, in one place so that tests compare against the texts it emits.
#pragma once

#include <ZeKL/CodecTypes.h>

namespace Korvel {
namespace CodecMessages {

// Short texts of the problems, by CodecProblem value.
inline const char* ProblemText(CodecProblem problem) {
    switch (problem) {
        case CodecProblem::None:
            return "";
        case CodecProblem::BeyondData:
            return "beyond the end of the data";
        case CodecProblem::ConstMismatch:
            return "constant mismatch";
        case CodecProblem::NoTableEntry:
            return "no table entry";
        case CodecProblem::BadBcdDigit:
            return "bad BCD digit";
        case CodecProblem::UnknownConversion:
            return "unknown conversion";
        case CodecProblem::BadLayout:
            return "bad layout";
        case CodecProblem::UnknownType:
            return "unknown type";
        case CodecProblem::BadConstant:
            return "bad constant";
        case CodecProblem::ConversionNotApplicable:
            return "conversion not applicable";
        case CodecProblem::ShortData:
            return "data shorter than the message";
        case CodecProblem::TrailingData:
            return "trailing data";
        case CodecProblem::NoSuchMessage:
            return "no such message";
        case CodecProblem::NotRecognised:
            return "not recognised";
        case CodecProblem::MissingValue:
            return "missing value";
        case CodecProblem::BadValue:
            return "bad value";
        case CodecProblem::OutOfRange:
            return "out of range";
        case CodecProblem::FactorZero:
            return "factor 0";
        case CodecProblem::NoTableText:
            return "no table entry with that text";
        case CodecProblem::UnknownParameter:
            return "unknown parameter";
        case CodecProblem::DuplicateValue:
            return "value given twice";
        case CodecProblem::Failure:
            return "internal failure";
    }
    return "";
}

// Details of encode failures, after "parameter 'ID': ".
constexpr const char* kNeedsValue = "needs a value";
constexpr const char* kNoSuchParameter = "is not a parameter of the message";
constexpr const char* kGivenTwice = "has two values";
constexpr const char* kNotANumber = "is not a number: ";
constexpr const char* kNotAnInteger = "is not an integer: ";
constexpr const char* kNotHex = "is not hex bytes: ";
constexpr const char* kNotUtf8 = "is not UTF-8 text";
constexpr const char* kTextForNumber = "takes a number, not a text form: ";
constexpr const char* kNumberForText = "takes a text, not a number";
constexpr const char* kDoesNotFit = "does not fit ";
constexpr const char* kFactorZero = "has a formula with factor 0, which cannot be inverted";
constexpr const char* kNoTableText = "has no table entry with the text ";
constexpr const char* kTableValueNotNumber = "has a table entry whose value is not a number: ";
constexpr const char* kNoMessage = "the instance has no such message";
constexpr const char* kOutOfMemory = "out of memory";

// Description problems, as encode reports them.
constexpr const char* kBadLayout = "cannot be placed: ";
constexpr const char* kUnknownType = "has an unknown type name: ";
constexpr const char* kBadConstant = "has a CONST value without a fitting byte image: ";

// What makes a layout bad.
constexpr const char* kLayoutZeroLength = "bit length 0";
constexpr const char* kLayoutLongNumber = "more than 64 bits for a number type";
constexpr const char* kLayoutUnaligned = "more than 64 bits not on whole bytes";
constexpr const char* kLayoutFp = "fp needs 32 bits";
constexpr const char* kLayoutDouble = "double needs 64 bits";
constexpr const char* kLayoutBcd = "bcd needs a multiple of 4 bits";
constexpr const char* kLayoutUcs2 = "ucs2 needs a multiple of 16 bits";
constexpr const char* kLayoutTooFar = "ends beyond the largest message (1 MiB)";

}  // namespace CodecMessages
}  // namespace Korvel
