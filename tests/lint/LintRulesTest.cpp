// Each lint rule on a document that triggers it and on one that does not: the clean document
// of LintTestDocuments.h with one change, which must give exactly the expected finding.
#include "LintTestDocuments.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using LintTest::Document;
using LintTest::Instance;
using LintTest::P;
using LintTest::PlaceOf;

namespace {

struct Linted {
    bool read = false;
    std::string xml;
    std::vector<Korvel::LintFinding> findings;

    std::string Summary() const {
        std::string text;
        for (const Korvel::LintFinding& f : findings) {
            text += f.rule + " " + std::to_string(f.line) + ":" + std::to_string(f.column) + " " +
                    Korvel::ItemPathText(f.path) + ": " + f.text + "\n";
        }
        return text;
    }
    std::vector<Korvel::LintFinding> Of(const std::string& rule) const {
        std::vector<Korvel::LintFinding> selected;
        for (const Korvel::LintFinding& f : findings) {
            if (f.rule == rule) {
                selected.push_back(f);
            }
        }
        return selected;
    }
};

Linted Lint(const Document& document) {
    Linted linted;
    linted.xml = document.Xml();
    linted.read = Korvel::LintText(linted.xml, linted.findings);
    return linted;
}

Instance& First(Document& document) {
    return document.instances[0];
}

// The one finding of the document, which must be of `rule` and severity `severity`.
Korvel::LintFinding Only(const Linted& linted, const std::string& rule, Korvel::LintSeverity severity) {
    EXPECT_TRUE(linted.read);
    EXPECT_EQ(linted.findings.size(), 1u) << linted.Summary();
    if (linted.findings.size() != 1) {
        return Korvel::LintFinding{};
    }
    EXPECT_EQ(linted.findings[0].rule, rule) << linted.Summary();
    EXPECT_EQ(linted.findings[0].severity, severity);
    return linted.findings[0];
}

void ExpectAt(const Korvel::LintFinding& finding, const std::pair<uint32_t, uint32_t>& place) {
    EXPECT_NE(place.first, 0u);
    EXPECT_EQ(finding.line, place.first) << finding.text;
    EXPECT_EQ(finding.column, place.second) << finding.text;
}

}  // namespace

TEST(LintRules, TheCleanDocumentHasNoFinding) {
    const Linted linted = Lint(Document{});
    EXPECT_TRUE(linted.read);
    EXPECT_TRUE(linted.findings.empty()) << linted.Summary();
}

TEST(LintRules, EveryRuleHasAUniqueIdAndASummary) {
    const std::vector<Korvel::LintRule> rules = Korvel::LintRules();
    ASSERT_EQ(rules.size(), 19u);
    for (std::size_t i = 0; i < rules.size(); ++i) {
        EXPECT_NE(std::string(rules[i].summary), "");
        for (std::size_t j = i + 1; j < rules.size(); ++j) {
            EXPECT_STRNE(rules[i].id, rules[j].id);
        }
    }
    EXPECT_STREQ(rules.front().id, "read");
    EXPECT_STREQ(Korvel::LintSeverityName(Korvel::LintSeverity::Warning), "warning");
    EXPECT_STREQ(Korvel::LintSeverityName(static_cast<Korvel::LintSeverity>(7)), "");
}

TEST(LintRule_Read, ReadErrorsAreFindingsWithTheReadersTextAndPlace) {
    Document document;
    document.conversions.push_back(" <CONVERSION id=\"Broken_Formula\" factor=\"1\"/>\n");
    const Linted linted = Lint(document);
    const Korvel::LintFinding finding = Only(linted, "read", Korvel::LintSeverity::Error);
    EXPECT_EQ(finding.text,
              "OpenTag >> CONVERSION element: Couldn't create IConversion, because not all required "
              "attributes were "
              "available!");
    EXPECT_EQ(finding.path.conversion, "Broken_Formula");
    ExpectAt(finding, PlaceOf(linted.xml, "<CONVERSION id=\"Broken_Formula\""));
}

TEST(LintRule_Read, ARefusedDocumentGivesFalseWithItsFatalMessage) {
    std::vector<Korvel::LintFinding> findings;
    EXPECT_FALSE(Korvel::LintText("<ECU>\n <INSTANCE id=\"a\">\n</ECU>", findings));
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings[0].rule, "read");
    EXPECT_EQ(findings[0].line, 3u);
    EXPECT_FALSE(Korvel::LintFile(nullptr, findings));
    EXPECT_FALSE(Korvel::LintFile("/no/such/file.xml", findings));
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings.back().rule, "read");
}

TEST(LintRule_NumberText, FactorWithACommaReadsAsItsIntegerPart) {
    Document document;
    document.conversions[0] = " <CONVERSION id=\"EngineSpeed_Formula\" factor=\"1,5\" offset=\"0\"/>\n";
    const Linted linted = Lint(document);
    const Korvel::LintFinding finding = Only(linted, "number-text", Korvel::LintSeverity::Error);
    EXPECT_EQ(finding.text, "factor '1,5' is not a number; it reads as 1");
    EXPECT_EQ(Korvel::ItemPathText(finding.path), "conversion EngineSpeed_Formula");
    ExpectAt(finding, PlaceOf(linted.xml, "<CONVERSION id=\"EngineSpeed_Formula\""));
}

TEST(LintRule_NumberText, HexNrcAndBitPositionWithAUnitAreFound) {
    Document document;
    document.nrcTable.replace(document.nrcTable.find("nrc=\"16\""), 8, "nrc=\"0x10\"");
    Linted linted = Lint(document);
    // nrc 0x10 reads as 0, so the table also lacks the standard code 0x10.
    const auto numbers = linted.Of("number-text");
    ASSERT_EQ(numbers.size(), 1u) << linted.Summary();
    EXPECT_EQ(numbers[0].text, "nrc '0x10' is not a decimal number; it reads as 0");
    EXPECT_EQ(numbers[0].path.nrc, "0");
    ExpectAt(numbers[0], PlaceOf(linted.xml, "<MAP nrc=\"0x10\""));

    Document bits;
    std::string xml = bits.Xml();
    xml.replace(xml.find("bitPos=\"24\""), 11, "bitPos=\"24bits\"");
    linted.xml = xml;
    linted.read = Korvel::LintText(xml, linted.findings);
    const Korvel::LintFinding finding = Only(linted, "number-text", Korvel::LintSeverity::Error);
    EXPECT_EQ(finding.text, "bitPos '24bits' is not a decimal number; it reads as 24");
    EXPECT_EQ(Korvel::ItemPathText(finding.path), "ReadDataByIdentifier_EngineSpeed/RESPONSE/Data");
}

TEST(LintRule_NumberText, NumbersWithExponentOrBlanksAreNumbers) {
    Document document;
    document.conversions[0] =
        " <CONVERSION id=\"EngineSpeed_Formula\" factor=\" 2.5e-1 \" offset=\"-4E1\"/>\n";
    const Linted linted = Lint(document);
    EXPECT_TRUE(linted.findings.empty()) << linted.Summary();
}

TEST(LintRule_TypeUnknown, CapitalisedNameReadsAsNoType) {
    Document document;
    First(document).response[2].type = "Unsigned";
    const Linted linted = Lint(document);
    const Korvel::LintFinding finding = Only(linted, "type-unknown", Korvel::LintSeverity::Error);
    EXPECT_EQ(finding.text, "type 'Unsigned' is none of the ten type names and reads as no type");
    ExpectAt(finding, PlaceOf(linted.xml, "<PARAMETER id=\"Data\""));
}

TEST(LintRule_TypeName, FloatyReadsAsFpByItsFirstLetters) {
    Document document;
    First(document).response[2] = P{"Data", 24, 32, "floaty", "", "MOTOROLA", "EngineSpeed_Formula"};
    const Linted linted = Lint(document);
    const Korvel::LintFinding finding = Only(linted, "type-name", Korvel::LintSeverity::Warning);
    EXPECT_EQ(finding.text,
              "type 'floaty' is not one of the ten type names; it reads as 'fp' by its first letters");
}

TEST(LintRule_TypeName, UndefinedReadsAsUnsigned) {
    Document document;
    First(document).response[2].type = "undefined";
    const Korvel::LintFinding finding = Only(Lint(document), "type-name", Korvel::LintSeverity::Warning);
    EXPECT_EQ(finding.text, "type 'undefined' reads as 'unsigned' by its first letters");
}

TEST(LintRule_TypeName, TheTenNamesAreAccepted) {
    Document document;
    int position = 40;
    for (const char* type : {"none", "unsigned", "signed", "bcd", "ascii", "ucs2", "utf8"}) {
        First(document).response.push_back(P{type, position, 8, type});
        position += 8;
    }
    First(document).response.push_back(P{"fp", position, 32, "fp"});
    First(document).response.push_back(P{"double", position + 32, 64, "double"});
    const Linted linted = Lint(document);
    EXPECT_TRUE(linted.findings.empty()) << linted.Summary();
}

TEST(LintRule_TypeLength, FpOf16BitsAndDoubleOf32) {
    Document document;
    First(document).response[2].type = "fp";
    First(document).response.push_back(P{"Wide", 40, 32, "double"});
    const Linted linted = Lint(document);
    const auto findings = linted.Of("type-length");
    ASSERT_EQ(findings.size(), 2u) << linted.Summary();
    EXPECT_EQ(linted.findings.size(), 2u) << linted.Summary();
    EXPECT_EQ(findings[0].text, "type 'fp' is 32 bits long, the parameter 16");
    EXPECT_EQ(findings[1].text, "type 'double' is 64 bits long, the parameter 32");
    EXPECT_EQ(findings[1].path.parameter, "Wide");
}

TEST(LintRule_SemanticsWord, MisspeltWordAndJoinedWords) {
    Document document;
    First(document).response[2].semantics = "MOTOROLLA";
    First(document).request[1].semantics = "XID,CONST MOTOROLA";
    const Linted linted = Lint(document);
    const auto findings = linted.Of("semantics-word");
    ASSERT_EQ(findings.size(), 2u) << linted.Summary();
    EXPECT_EQ(findings[0].text,
              "semantics word 'XID,CONST' is not one of SID, XID, CONST, MOTOROLA, GAP, SID_NR; it still "
              "sets XID and "
              "CONST, found inside it");
    EXPECT_EQ(findings[0].path.message, "REQUEST");
    EXPECT_EQ(findings[1].text,
              "semantics word 'MOTOROLLA' is not one of SID, XID, CONST, MOTOROLA, GAP, SID_NR");
    EXPECT_EQ(findings[1].severity, Korvel::LintSeverity::Warning);
}

TEST(LintRule_SemanticsWord, KnownWordsInAnyOrderAndSpacing) {
    Document document;
    First(document).request[1].semantics = "  MOTOROLA\tXID   CONST ";
    const Linted linted = Lint(document);
    EXPECT_TRUE(linted.findings.empty()) << linted.Summary();
}

TEST(LintRule_ConstValue, ValueTooLargeForItsLengthAndHexDigitsThatAreNone) {
    Document document;
    First(document).request[1].value = "0x1FFFF";
    const Linted linted = Lint(document);
    const auto findings = linted.Of("const-value");
    ASSERT_EQ(findings.size(), 1u) << linted.Summary();
    EXPECT_EQ(findings[0].text, "CONST value '0x1FFFF' has no byte image as type unsigned of 16 bits");
    ExpectAt(findings[0], PlaceOf(linted.xml, "<PARAMETER id=\"DataIdentifier\""));

    Document partial;
    First(partial).request[1].value = "0xZZ";
    First(partial).response[1].value = "0xZZ";
    First(partial).negative[1].value = "0x22h";
    const Linted partialLinted = Lint(partial);
    const auto numbers = partialLinted.Of("const-value");
    ASSERT_EQ(numbers.size(), 3u) << partialLinted.Summary();
    EXPECT_EQ(numbers[0].text,
              "CONST value '0xZZ' is not a number of type unsigned; its byte image is 00 00");
}

TEST(LintRule_ConstValue, HexBytesOfTypeNoneHaveAnImage) {
    Document document;
    First(document).response.push_back(P{"Pad", 40, 16, "none", "0xZZ", "CONST"});
    First(document).response.push_back(P{"Fill", 56, 16, "none", "A5 5A", "CONST"});
    const Linted linted = Lint(document);
    const auto findings = linted.Of("const-value");
    ASSERT_EQ(findings.size(), 1u) << linted.Summary();
    EXPECT_EQ(findings[0].path.parameter, "Pad");
    EXPECT_EQ(findings[0].text, "CONST value '0xZZ' has no byte image as type none of 16 bits");
}

TEST(LintRule_ConversionMissing, IdThatNamesNothing) {
    Document document;
    First(document).response[2].convId = "EngineSped_Formula";
    const Linted linted = Lint(document);
    const auto findings = linted.Of("conversion-missing");
    ASSERT_EQ(findings.size(), 1u) << linted.Summary();
    EXPECT_EQ(findings[0].text, "conversion 'EngineSped_Formula' does not exist");
    // The conversion it meant is now used by nothing.
    EXPECT_EQ(linted.Of("conversion-unused").size(), 1u);
    EXPECT_EQ(linted.findings.size(), 2u) << linted.Summary();
}

TEST(LintRule_Overlap, ParameterOverlappingTheSid) {
    Document document;
    First(document).request[1].bitPos = 4;
    First(document).request.push_back(P{"Pad", 20, 4, "none", "", "GAP"});
    const Linted linted = Lint(document);
    const auto findings = linted.Of("overlap");
    ASSERT_EQ(findings.size(), 1u) << linted.Summary();
    EXPECT_EQ(findings[0].text, "bits 4 to 7 are also in 'SID' (bits 0 to 7)");
    EXPECT_EQ(Korvel::ItemPathText(findings[0].path),
              "ReadDataByIdentifier_EngineSpeed/REQUEST/DataIdentifier");
    ExpectAt(findings[0], PlaceOf(linted.xml, "<PARAMETER id=\"DataIdentifier\""));
    EXPECT_EQ(linted.findings.size(), 1u) << linted.Summary();
}

TEST(LintRule_Overlap, GapParametersAreIncluded) {
    Document document;
    First(document).response.push_back(P{"Reserved", 32, 16, "none", "", "GAP"});
    const Korvel::LintFinding finding = Only(Lint(document), "overlap", Korvel::LintSeverity::Error);
    EXPECT_EQ(finding.text, "bits 32 to 39 are also in 'Data' (bits 24 to 39)");
    EXPECT_EQ(finding.path.parameter, "Reserved");
}

TEST(LintRule_Overlap, AdjacentParametersDoNotOverlap) {
    Document document;
    First(document).response.push_back(P{"Next", 40, 1});
    First(document).response.push_back(P{"Bit", 41, 1});
    First(document).response.push_back(P{"Empty", 41, 0});
    const Linted linted = Lint(document);
    EXPECT_TRUE(linted.findings.empty()) << linted.Summary();
}

TEST(LintRule_Hole, BitsBeforeAParameterThatNothingCovers) {
    Document document;
    First(document).response[2].bitPos = 32;
    const Linted linted = Lint(document);
    const Korvel::LintFinding finding = Only(linted, "hole", Korvel::LintSeverity::Warning);
    EXPECT_EQ(finding.text, "bits 24 to 31 before it are in no parameter (mark them with a GAP parameter)");
    EXPECT_EQ(finding.path.parameter, "Data");
    ExpectAt(finding, PlaceOf(linted.xml, "<PARAMETER id=\"Data\""));
}

TEST(LintRule_Hole, AGapParameterFillsIt) {
    Document document;
    First(document).response[2].bitPos = 32;
    First(document).response.push_back(P{"Reserved", 24, 8, "none", "00", "GAP"});
    const Linted linted = Lint(document);
    EXPECT_TRUE(linted.findings.empty()) << linted.Summary();
}

TEST(LintRule_RequestSid, RequestWithoutConstSidAndInstanceWithoutRequest) {
    Document document;
    First(document).request[0].semantics = "SID";
    document.instances[1].hasRequest = false;
    const Linted linted = Lint(document);
    const auto findings = linted.Of("request-sid");
    ASSERT_EQ(findings.size(), 2u) << linted.Summary();
    EXPECT_EQ(findings[0].text, "the request has no CONST SID parameter");
    EXPECT_EQ(Korvel::ItemPathText(findings[0].path), "ReadDataByIdentifier_EngineSpeed/REQUEST");
    ExpectAt(findings[0], PlaceOf(linted.xml, "<REQUEST>"));
    EXPECT_EQ(findings[1].text, "the instance has no request");
    ExpectAt(findings[1], PlaceOf(linted.xml, "<INSTANCE id=\"ReadDataByIdentifier_Mode\""));
}

TEST(LintRule_ResponseSid, SidThatIsNotTheRequestsPlus40) {
    Document document;
    First(document).response[0].value = "0x63";
    const Linted linted = Lint(document);
    const Korvel::LintFinding finding = Only(linted, "response-sid", Korvel::LintSeverity::Error);
    EXPECT_EQ(finding.text, "SID 0x63 is not the request's 0x22 plus 0x40 (0x62)");
    EXPECT_EQ(Korvel::ItemPathText(finding.path), "ReadDataByIdentifier_EngineSpeed/RESPONSE/SID");
}

TEST(LintRule_ResponseSid, ResponseWithoutSidAndTheSameSidWrittenOtherwise) {
    Document document;
    First(document).response[0].semantics = "CONST";
    document.instances[1].response[0].value = "98";  // 0x62 in decimal
    const Linted linted = Lint(document);
    const Korvel::LintFinding finding = Only(linted, "response-sid", Korvel::LintSeverity::Error);
    EXPECT_EQ(finding.text, "the positive response has no SID parameter");
    EXPECT_EQ(finding.path.instance, "ReadDataByIdentifier_EngineSpeed");
}

TEST(LintRule_NegativeResponse, EachPartOfTheShape) {
    const std::pair<std::vector<P>, std::string> cases[] = {
        {{P{"SID_NR", 0, 8, "unsigned", "0x7F", "SID_NR"}, P{"SIDRQ", 8, 8, "unsigned", "0x22", "CONST"},
          P{"NRC", 16, 8}},
         "bits 0 to 7 are no CONST parameter of value 0x7F"},
        {{P{"SID_NR", 0, 8, "unsigned", "0x7E", "SID_NR CONST"},
          P{"SIDRQ", 8, 8, "unsigned", "0x22", "CONST"}, P{"NRC", 16, 8}},
         "bits 0 to 7 are no CONST parameter of value 0x7F"},
        {{P{"SID_NR", 0, 8, "unsigned", "0x7F", "SID_NR CONST"},
          P{"SIDRQ", 8, 8, "unsigned", "0x2E", "CONST"}, P{"NRC", 16, 8}},
         "bits 8 to 15 hold 0x2E, the request's SID is 0x22"},
        {{P{"SID_NR", 0, 8, "unsigned", "0x7F", "SID_NR CONST"}, P{"SIDRQ", 8, 8, "unsigned", "0x22"},
          P{"NRC", 16, 8}},
         "bits 8 to 15 are no CONST parameter holding the request's SID"},
        {{P{"SID_NR", 0, 8, "unsigned", "0x7F", "SID_NR CONST"},
          P{"SIDRQ", 8, 8, "unsigned", "0x22", "CONST"}},
         "bits 16 to 23 are no NRC parameter"},
    };
    for (const auto& [negative, why] : cases) {
        Document document;
        First(document).negative = negative;
        const Linted linted = Lint(document);
        const Korvel::LintFinding finding = Only(linted, "negative-response", Korvel::LintSeverity::Error);
        EXPECT_EQ(finding.text, "the negative response is not shaped 7F, request SID, NRC: " + why);
        EXPECT_EQ(Korvel::ItemPathText(finding.path), "ReadDataByIdentifier_EngineSpeed/NEGATIVE_RESPONSE");
        ExpectAt(finding, PlaceOf(linted.xml, "<NEGATIVE_RESPONSE>"));
    }
}

TEST(LintRule_NegativeResponse, AMissingElementIsPlacedAtItsInstance) {
    // The reader gives an instance without NEGATIVE_RESPONSE an empty one, which has no element.
    const std::string xml = Document{}.Xml();
    std::string changed = xml;
    const std::size_t begin = changed.find("  <NEGATIVE_RESPONSE>");
    const std::size_t end = changed.find("</NEGATIVE_RESPONSE>\n", begin) + 21;
    changed.erase(begin, end - begin);
    std::vector<Korvel::LintFinding> findings;
    ASSERT_TRUE(Korvel::LintText(changed, findings));
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(findings[0].rule, "negative-response");
    const auto place = PlaceOf(changed, "<INSTANCE id=\"ReadDataByIdentifier_EngineSpeed\"");
    EXPECT_EQ(findings[0].line, place.first);
    EXPECT_EQ(findings[0].column, place.second);
}

TEST(LintRule_AmbiguousRequest, SameConstantsWrittenDifferently) {
    Document document;
    document.instances[1].request[1].value = "256";  // 0x0100, the first instance's identifier
    const Linted linted = Lint(document);
    const Korvel::LintFinding finding = Only(linted, "ambiguous-request", Korvel::LintSeverity::Error);
    EXPECT_EQ(
        finding.text,
        "the request has the same constants as the request of 'ReadDataByIdentifier_EngineSpeed', so the two "
        "cannot be told apart");
    EXPECT_EQ(Korvel::ItemPathText(finding.path), "ReadDataByIdentifier_Mode/REQUEST");
    ExpectAt(finding, PlaceOf(linted.xml, "<REQUEST>", "<INSTANCE id=\"ReadDataByIdentifier_Mode\""));
}

TEST(LintRule_AmbiguousRequest, SameBitsSplitIntoOtherParameters) {
    Document document;
    // 0x22 0x01 0x00 as one 24-bit constant: the same bits as SID 0x22 with identifier 0x0100.
    document.instances[1].request = {P{"All", 0, 24, "unsigned", "0x220100", "SID CONST MOTOROLA"}};
    document.instances[1].response[1].value = "0x0100";
    const Linted linted = Lint(document);
    EXPECT_EQ(linted.Of("ambiguous-request").size(), 1u) << linted.Summary();
}

TEST(LintRule_AmbiguousRequest, OneDifferentBitTellsThemApart) {
    Document document;
    document.instances[1].request.push_back(P{"Flag", 24, 1, "unsigned", "1", "CONST"});
    document.instances[1].request[1].value = "0x0100";
    document.instances[1].response[1].value = "0x0100";
    const Linted linted = Lint(document);
    EXPECT_TRUE(linted.Of("ambiguous-request").empty()) << linted.Summary();
}

TEST(LintRule_ConversionUnused, ConversionThatNoParameterUses) {
    Document document;
    document.conversions.push_back(" <CONVERSION id=\"Spare_Formula\" factor=\"2\" offset=\"0\"/>\n");
    const Linted linted = Lint(document);
    const Korvel::LintFinding finding = Only(linted, "conversion-unused", Korvel::LintSeverity::Warning);
    EXPECT_EQ(finding.text, "no parameter uses the conversion");
    ExpectAt(finding, PlaceOf(linted.xml, "<CONVERSION id=\"Spare_Formula\""));
}

TEST(LintRule_ConversionKind, FormulaWithEntriesAndTableWithout) {
    Document document;
    document.conversions[0] =
        " <CONVERSION id=\"EngineSpeed_Formula\" factor=\"0.25\" offset=\"0\">\n  <MAP val=\"0\" "
        "text=\"Off\" />\n "
        "</CONVERSION>\n";
    document.conversions[1] = " <CONVERSION id=\"Mode_ValueTable\" factor=\"1\" offset=\"0\"/>\n";
    const Linted linted = Lint(document);
    const auto findings = linted.Of("conversion-kind");
    ASSERT_EQ(findings.size(), 2u) << linted.Summary();
    EXPECT_EQ(linted.findings.size(), 2u) << linted.Summary();
    EXPECT_EQ(findings[0].text, "named as a formula, it has 1 table entries and reads as a value table");
    EXPECT_EQ(findings[1].text, "a value table without entries; it reads as a formula");
    EXPECT_EQ(findings[1].path.conversion, "Mode_ValueTable");
}

TEST(LintRule_FactorZero, FormulaWithFactorZero) {
    Document document;
    document.conversions[0] = " <CONVERSION id=\"EngineSpeed_Formula\" factor=\"0\" offset=\"-40\"/>\n";
    document.conversions[1] =
        " <CONVERSION id=\"Mode_ValueTable\" factor=\"0\" offset=\"0\">\n  <MAP val=\"1\" text=\"Normal\" "
        "/>\n "
        "</CONVERSION>\n";
    const Linted linted = Lint(document);
    const Korvel::LintFinding finding = Only(linted, "factor-zero", Korvel::LintSeverity::Warning);
    EXPECT_EQ(finding.text, "factor 0 turns every raw value into the offset -40");
    EXPECT_EQ(finding.path.conversion, "EngineSpeed_Formula");
}

TEST(LintRule_TableValue, ValuesThatAreTheSameNumber) {
    Document document;
    document.conversions[1] =
        " <CONVERSION id=\"Mode_ValueTable\" factor=\"1\" offset=\"0\">\n"
        "  <MAP val=\"1\" text=\"Normal\" />\n"
        "  <MAP val=\"01\" text=\"Sport\" />\n"
        "  <MAP val=\"0x2\" text=\"Eco\" />\n"
        "  <MAP val=\"2\" text=\"Eco too\" />\n"
        "  <MAP val=\"x\" text=\"No number\" />\n"
        " </CONVERSION>\n";
    const Linted linted = Lint(document);
    const auto findings = linted.Of("table-value");
    ASSERT_EQ(findings.size(), 2u) << linted.Summary();
    EXPECT_EQ(linted.findings.size(), 2u) << linted.Summary();
    EXPECT_EQ(findings[0].text, "value '01' is the same number (1) as value '1'");
    EXPECT_EQ(Korvel::ItemPathText(findings[0].path), "conversion Mode_ValueTable/entry 01");
    ExpectAt(findings[0], PlaceOf(linted.xml, "<MAP val=\"01\""));
    EXPECT_EQ(findings[1].text, "value '2' is the same number (2) as value '0x2'");
}

TEST(LintRule_NrcStandard, TableLackingStandardCodes) {
    Document document;
    const std::size_t at = document.nrcTable.find("  <MAP nrc=\"19\"");
    document.nrcTable.erase(at, document.nrcTable.find('\n', at) + 1 - at);
    const Linted linted = Lint(document);
    const Korvel::LintFinding finding = Only(linted, "nrc-standard", Korvel::LintSeverity::Info);
    EXPECT_EQ(finding.text, "the NRC table lacks 1 of the 40 UDS standard codes: 0x13");
    EXPECT_TRUE(finding.path.IsEmpty());
    ExpectAt(finding, PlaceOf(linted.xml, "<NEGATIVE_RESPONSE_CODES>"));
}

TEST(LintRule_NrcStandard, KwpHasItsOwnTable) {
    Document document;
    document.protocol = "KWP";
    document.nrcTable = LintTest::NrcTableXml(Korvel::ProtocolKwp);
    EXPECT_TRUE(Lint(document).findings.empty());
    document.nrcTable = " <NEGATIVE_RESPONSE_CODES>\n </NEGATIVE_RESPONSE_CODES>\n";
    const Korvel::LintFinding finding = Only(Lint(document), "nrc-standard", Korvel::LintSeverity::Info);
    EXPECT_EQ(
        finding.text.rfind("the NRC table lacks 24 of the 24 KWP standard codes: 0x10, 0x11, 0x12, 0x21,", 0),
        0u)
        << finding.text;
}

TEST(LintRule_NrcStandard, NoTableElementIsPlacedAtTheEcu) {
    Document document;
    document.nrcTable.clear();
    const Linted linted = Lint(document);
    const Korvel::LintFinding finding = Only(linted, "nrc-standard", Korvel::LintSeverity::Info);
    ExpectAt(finding, PlaceOf(linted.xml, "<ECU"));
}
