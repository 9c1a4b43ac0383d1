// The lint's entry points: a model without positions, a file, the sample documents, the rules'
// documentation, and documents made to hurt it.
#include "LintTestDocuments.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::string Key(const Korvel::LintFinding& finding) {
    return finding.rule + "|" + Korvel::ItemPathText(finding.path) + "|" + finding.text;
}

std::vector<std::string> Keys(const std::vector<Korvel::LintFinding>& findings) {
    std::vector<std::string> keys;
    for (const Korvel::LintFinding& finding : findings) {
        keys.push_back(Key(finding));
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

}  // namespace

TEST(LintEcu, AModelBuiltByTheFactoryHasFindingsWithoutPositions) {
    std::unique_ptr<Korvel::IEcu> ecu = Korvel::GetFactory().CreateEcu();
    std::unique_ptr<Korvel::IInstance> instance = Korvel::GetFactory().CreateInstance();
    instance->SetId("Read");
    Korvel::IRequest* request = instance->CreateRequest();
    request->AddParam("SID", 0, 8, "0x22", "unsigned", "", "SID CONST", "");
    request->AddParam("DID", 4, 16, "0x0100", "unsigned", "", "XID CONST MOTOROLA", "Missing_Formula");
    ecu->GetInstanceContainer()->AddInstance(*instance);

    std::vector<Korvel::LintFinding> findings;
    ASSERT_TRUE(Korvel::LintEcu(*ecu, findings));
    const std::vector<std::string> expected = {
        "conversion-missing|Read/REQUEST/DID|conversion 'Missing_Formula' does not exist",
        "nrc-standard||the NRC table lacks 40 of the 40 UDS standard codes: 0x10, 0x11, 0x12, 0x13, 0x14, "
        "0x21, "
        "0x22, 0x24, 0x25, 0x26, 0x31, 0x33, 0x35, 0x36, 0x37, 0x70, 0x71, 0x72, 0x73, 0x78, 0x7E, 0x7F, "
        "0x81, 0x82, "
        "0x83, 0x84, 0x85, 0x86, 0x87, 0x88, 0x89, 0x8A, 0x8B, 0x8C, 0x8D, 0x8F, 0x90, 0x91, 0x92, 0x93",
        "overlap|Read/REQUEST/DID|bits 4 to 7 are also in 'SID' (bits 0 to 7)",
    };
    EXPECT_EQ(Keys(findings), expected);
    for (const Korvel::LintFinding& finding : findings) {
        EXPECT_EQ(finding.line, 0u);
        EXPECT_EQ(finding.column, 0u);
    }
    // The rule order: instances first, the NRC table last.
    EXPECT_EQ(findings.back().rule, "nrc-standard");
}

TEST(LintEcu, FindsWhatTheReadOfTheSameDocumentFinds) {
    LintTest::Document document;
    document.instances[0].response[2].bitPos = 32;
    document.instances[0].response[0].value = "0x61";
    document.instances[1].request[1].semantics = "XID CONST MOTOROLA SIGNED";
    document.conversions.push_back(" <CONVERSION id=\"Zero_Formula\" factor=\"0\" offset=\"1\"/>\n");
    const std::string xml = document.Xml();
    std::vector<Korvel::LintFinding> fromText;
    ASSERT_TRUE(Korvel::LintText(xml, fromText));
    auto ecu = Korvel::GetKLReader().ReadText(xml, "");
    ASSERT_NE(ecu, nullptr);
    std::vector<Korvel::LintFinding> fromModel;
    ASSERT_TRUE(Korvel::LintEcu(*ecu, fromModel));
    EXPECT_EQ(Keys(fromModel), Keys(fromText));
    EXPECT_EQ(fromText.size(), 5u);
}

TEST(LintFile, TheSampleDocumentsLintClean) {
    for (const char* name : {"/uds_ecu.xml", "/kwp_ecu.xml"}) {
        std::vector<Korvel::LintFinding> findings;
        ASSERT_TRUE(Korvel::LintFile((std::string(ZEKL_EXAMPLES_DIR) + name).c_str(), findings)) << name;
        std::string all;
        for (const Korvel::LintFinding& finding : findings) {
            all += Key(finding) + "\n";
        }
        EXPECT_TRUE(findings.empty()) << name << ":\n" << all;
    }
}

TEST(LintFile, FindingsComeInDocumentOrder) {
    LintTest::Document document;
    document.instances[1].response[2].bitPos = 40;
    document.instances[0].request[0].semantics = "SID";
    document.conversions.push_back(" <CONVERSION id=\"Spare_Formula\" factor=\"1\" offset=\"0\"/>\n");
    std::vector<Korvel::LintFinding> findings;
    ASSERT_TRUE(Korvel::LintText(document.Xml(), findings));
    ASSERT_EQ(findings.size(), 3u);
    EXPECT_EQ(findings[0].rule, "request-sid");
    EXPECT_EQ(findings[1].rule, "hole");
    EXPECT_EQ(findings[2].rule, "conversion-unused");
    EXPECT_LT(findings[0].line, findings[1].line);
    EXPECT_LT(findings[1].line, findings[2].line);
}

TEST(LintDocumentation, EveryRuleHasASectionWithAnExample) {
    std::ifstream in(std::string(ZEKL_DOCS_DIR) + "/lint.md");
    ASSERT_TRUE(in.good());
    std::stringstream text;
    text << in.rdbuf();
    const std::string doc = text.str();
    for (const Korvel::LintRule& rule : Korvel::LintRules()) {
        const std::string heading = std::string("\n### `") + rule.id + "`";
        const std::size_t at = doc.find(heading);
        ASSERT_NE(at, std::string::npos) << rule.id;
        const std::size_t next = doc.find("\n### ", at + heading.size());
        const std::string section = doc.substr(at, next == std::string::npos ? std::string::npos : next - at);
        EXPECT_NE(section.find(Korvel::LintSeverityName(rule.severity)), std::string::npos) << rule.id;
        EXPECT_NE(section.find("```"), std::string::npos) << rule.id << " has no example";
        EXPECT_NE(section.find(std::string("[") + rule.id + "]"), std::string::npos)
            << rule.id << ": the example shows no finding of the rule";
    }
}

TEST(LintHostile, ExtremePositionsAndLengthsAreHandled) {
    LintTest::Document document;
    // Positions read with atol saturate at 2147483647; lengths of that size neither overflow
    // the layout's arithmetic nor make the comparison of requests build a pattern of them.
    document.instances[0].request.push_back(
        LintTest::P{"Far", 2147483647, 2147483647, "none", "00", "CONST"});
    document.instances[1].request.push_back(
        LintTest::P{"Far", 2147483647, 2147483647, "none", "00", "CONST"});
    document.instances[0].response.push_back(LintTest::P{"Huge", 40, 2147483647, "ascii", "x", "CONST"});
    std::vector<Korvel::LintFinding> findings;
    ASSERT_TRUE(Korvel::LintText(document.Xml(), findings));
    std::size_t holes = 0;
    for (const Korvel::LintFinding& finding : findings) {
        holes += finding.rule == "hole" ? 1 : 0;
        EXPECT_NE(finding.rule, "ambiguous-request");
    }
    EXPECT_EQ(holes, 2u);
}

TEST(LintHostile, ManyEqualRequestsAreReportedOnceEach) {
    LintTest::Document document;
    for (int i = 0; i < 200; ++i) {
        document.instances.push_back(
            LintTest::ReadDid("Copy" + std::to_string(i), "0x0100", "EngineSpeed_Formula"));
    }
    std::vector<Korvel::LintFinding> findings;
    ASSERT_TRUE(Korvel::LintText(document.Xml(), findings));
    EXPECT_EQ(findings.size(), 200u);
    for (const Korvel::LintFinding& finding : findings) {
        EXPECT_EQ(finding.rule, "ambiguous-request");
        EXPECT_NE(finding.text.find("'ReadDataByIdentifier_EngineSpeed'"), std::string::npos);
    }
}
