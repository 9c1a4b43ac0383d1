// The comparison of two descriptions: every kind of change, changes of order and form only,
// and identical documents.
#include <ZeKL/ZeKL.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

const char* const kBase =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
    "<ECU protocol=\"UDS\">\n"
    " <NEGATIVE_RESPONSE_CODES>\n"
    "  <MAP nrc=\"16\" text=\"General reject\"/>\n"
    "  <MAP nrc=\"17\" text=\"Service not supported\"/>\n"
    "  <MAP nrc=\"49\" text=\"Request out of range\"/>\n"
    " </NEGATIVE_RESPONSE_CODES>\n"
    " <INSTANCE id=\"ReadSpeed\">\n"
    "  <REQUEST>\n"
    "   <PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"0x22\" "
    "semantics=\"SID "
    "CONST\" convId=\"\"/>\n"
    "   <PARAMETER id=\"DID\" bitPos=\"8\" bitLen=\"16\" type=\"unsigned\" unit=\"\" value=\"0x0100\" "
    "semantics=\"XID "
    "CONST MOTOROLA\" convId=\"\"/>\n"
    "  </REQUEST>\n"
    "  <RESPONSE>\n"
    "   <PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"0x62\" "
    "semantics=\"SID "
    "CONST\" convId=\"\"/>\n"
    "   <PARAMETER id=\"Speed\" bitPos=\"8\" bitLen=\"16\" type=\"unsigned\" unit=\"rpm\" value=\"\" "
    "semantics=\"MOTOROLA\" convId=\"Speed_Formula\"/>\n"
    "   <PARAMETER id=\"Mode\" bitPos=\"24\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"\" "
    "semantics=\"\" "
    "convId=\"Mode_ValueTable\"/>\n"
    "  </RESPONSE>\n"
    "  <NEGATIVE_RESPONSE>\n"
    "  </NEGATIVE_RESPONSE>\n"
    " </INSTANCE>\n"
    " <INSTANCE id=\"Reset\">\n"
    "  <REQUEST>\n"
    "   <PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"0x11\" "
    "semantics=\"SID "
    "CONST\" convId=\"\"/>\n"
    "  </REQUEST>\n"
    "  <NEGATIVE_RESPONSE>\n"
    "  </NEGATIVE_RESPONSE>\n"
    " </INSTANCE>\n"
    " <INSTANCE id=\"Session\">\n"
    "  <REQUEST>\n"
    "   <PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"0x10\" "
    "semantics=\"SID "
    "CONST\" convId=\"\"/>\n"
    "  </REQUEST>\n"
    "  <NEGATIVE_RESPONSE>\n"
    "  </NEGATIVE_RESPONSE>\n"
    " </INSTANCE>\n"
    " <CONVERSION id=\"Speed_Formula\" factor=\"0.2500000000000000\" offset=\"0.0000000000000000\"/>\n"
    " <CONVERSION id=\"Mode_ValueTable\" factor=\"1.0000000000000000\" offset=\"0.0000000000000000\">\n"
    "  <MAP val=\"1\" text=\"Normal\" />\n"
    "  <MAP val=\"2\" text=\"Sport\" />\n"
    "  <MAP val=\"3\" text=\"Eco\" />\n"
    " </CONVERSION>\n"
    "</ECU>\n";

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) {
        text.replace(at, from.size(), to);
    }
    return text;
}

// The text with the first line holding `line` removed.
std::string WithoutLine(const std::string& text, const std::string& line) {
    const std::size_t at = text.find(line);
    EXPECT_NE(at, std::string::npos) << line;
    const std::size_t begin = text.rfind('\n', at) + 1;
    const std::size_t end = text.find('\n', at) + 1;
    return text.substr(0, begin) + text.substr(end);
}

// Moves the lines of [first, last] (each a line holding the text) before the line holding
// `before`.
std::string MoveLines(const std::string& text, const std::string& first, const std::string& last,
                      const std::string& before) {
    const std::size_t begin = text.rfind('\n', text.find(first)) + 1;
    const std::size_t end = text.find('\n', text.find(last, begin)) + 1;
    const std::string block = text.substr(begin, end - begin);
    std::string rest = text.substr(0, begin) + text.substr(end);
    const std::size_t target = rest.rfind('\n', rest.find(before)) + 1;
    rest.insert(target, block);
    return rest;
}

std::unique_ptr<Korvel::IEcu> Read(const std::string& text) {
    Korvel::ReportCollector collector(Korvel::ReportLevelError);
    auto ecu = Korvel::GetKLReader().ReadText(text, "", collector);
    EXPECT_NE(ecu, nullptr);
    EXPECT_EQ(collector.GetErrorCount(), 0u)
        << (collector.GetMessages().empty() ? "" : collector.GetMessages()[0].text);
    return ecu;
}

// Each difference as "change item path attribute: before -> after".
std::vector<std::string> Diff(const std::string& before, const std::string& after, bool order = false) {
    const auto old = Read(before);
    const auto now = Read(after);
    std::vector<std::string> lines;
    if (!old || !now) {
        return lines;
    }
    Korvel::DiffOptions options;
    options.order = order;
    std::vector<Korvel::DiffEntry> entries;
    EXPECT_TRUE(Korvel::DiffEcus(*old, *now, options, entries));
    for (const Korvel::DiffEntry& entry : entries) {
        std::string line = std::string(Korvel::DiffChangeName(entry.change)) + " " + entry.item + " " +
                           Korvel::ItemPathText(entry.path);
        if (!entry.attribute.empty()) {
            line += " " + entry.attribute + ": " + entry.before + " -> " + entry.after;
        }
        lines.push_back(line);
    }
    return lines;
}

using Lines = std::vector<std::string>;

}  // namespace

TEST(Diff_Equal, IdenticalDocumentsHaveNoDifference) {
    EXPECT_EQ(Diff(kBase, kBase), Lines{});
    EXPECT_EQ(Diff(kBase, kBase, true), Lines{});
}

TEST(Diff_Equal, FormOnlyChangesAreNoDifference) {
    std::string other = kBase;
    // Another declaration, blank lines and indentation, attributes in another order, quotes.
    other = Replaced(other, "<?xml version=\"1.0\" encoding=\"utf-8\"?>", "<?xml version='1.0'?>\n\n");
    other = Replaced(other, " <INSTANCE id=\"Reset\">", "\t\t<INSTANCE   id='Reset' >");
    other = Replaced(other, "<MAP nrc=\"17\" text=\"Service not supported\"/>",
                     "<MAP text=\"Service not supported\" nrc=\"17\"></MAP>");
    // The same numbers and values written otherwise.
    other = Replaced(other, "factor=\"0.2500000000000000\" offset=\"0.0000000000000000\"",
                     "offset=\"0\" factor=\"0.25\"");
    other = Replaced(other, "value=\"0x0100\"", "value=\"256\"");
    other =
        Replaced(other, "value=\"0x62\" semantics=\"SID CONST\"", "value=\"98\" semantics=\"CONST  SID\"");
    other = Replaced(other, "semantics=\"XID CONST MOTOROLA\"", "semantics=\"MOTOROLA XID CONST\"");
    EXPECT_EQ(Diff(kBase, other), Lines{});
}

TEST(Diff_Order, OrderOnlyChangesAreNoDifferenceUnlessAskedFor) {
    std::string other = kBase;
    // Session before ReadSpeed; Mode before Speed; NRC 49 first; entry 3 first; conversions swapped.
    other = MoveLines(other, "<INSTANCE id=\"Session\">", "</INSTANCE>", "<INSTANCE id=\"ReadSpeed\">");
    other = MoveLines(other, "<PARAMETER id=\"Mode\"", "<PARAMETER id=\"Mode\"", "<PARAMETER id=\"Speed\"");
    other = MoveLines(other, "<MAP nrc=\"49\"", "<MAP nrc=\"49\"", "<MAP nrc=\"16\"");
    other = MoveLines(other, "<MAP val=\"3\"", "<MAP val=\"3\"", "<MAP val=\"1\"");
    other = MoveLines(other, "<CONVERSION id=\"Mode_ValueTable\"", "</CONVERSION>",
                      "<CONVERSION id=\"Speed_Formula\"");
    EXPECT_EQ(Diff(kBase, other), Lines{});
    EXPECT_EQ(Diff(kBase, other, true), (Lines{
                                            "moved nrc nrc 49 position: 2 -> 0",
                                            "moved entry conversion Mode_ValueTable/entry 3 position: 2 -> 0",
                                            "moved conversion conversion Speed_Formula position: 0 -> 1",
                                            // Of two swapped neighbours either one moved; the
                                            // earlier one is reported.
                                            "moved parameter ReadSpeed/RESPONSE/Speed position: 1 -> 2",
                                            "moved instance Session position: 2 -> 0",
                                        }));
}

TEST(Diff_Order, TheFewestMovesAreReported) {
    // ReadSpeed Reset Session -> Reset Session ReadSpeed: one instance moved, not two.
    const std::string other =
        MoveLines(kBase, "<INSTANCE id=\"ReadSpeed\">", "</INSTANCE>", "<CONVERSION id=\"Speed_Formula\"");
    EXPECT_EQ(Diff(kBase, other, true), Lines{"moved instance ReadSpeed position: 0 -> 2"});
}

TEST(Diff_Order, AddedAndRemovedItemsDoNotCountAsMoves) {
    std::string other = WithoutLine(kBase, "<MAP nrc=\"16\"");
    other = Replaced(other, "  <MAP nrc=\"49\"", "  <MAP nrc=\"18\" text=\"x\"/>\n  <MAP nrc=\"49\"");
    EXPECT_EQ(Diff(kBase, other, true), (Lines{"removed nrc nrc 16", "added nrc nrc 18"}));
}

TEST(Diff_Protocol, ChangedProtocol) {
    EXPECT_EQ(Diff(kBase, Replaced(kBase, "protocol=\"UDS\"", "protocol=\"KWP\"")),
              Lines{"changed protocol  protocol: UDS -> KWP"});
}

TEST(Diff_Nrc, AddedRemovedAndChangedCodes) {
    std::string other = Replaced(kBase, "text=\"General reject\"", "text=\"Reject\"");
    other = WithoutLine(other, "<MAP nrc=\"17\"");
    other = Replaced(other, "  <MAP nrc=\"49\"", "  <MAP nrc=\"120\" text=\"Pending\"/>\n  <MAP nrc=\"49\"");
    EXPECT_EQ(Diff(kBase, other), (Lines{
                                      "changed nrc nrc 16 text: General reject -> Reject",
                                      "removed nrc nrc 17",
                                      "added nrc nrc 120",
                                  }));
}

TEST(Diff_Conversion, FactorOffsetKindAndEntries) {
    std::string other = Replaced(kBase, "factor=\"0.2500000000000000\" offset=\"0.0000000000000000\"",
                                 "factor=\"0.5\" offset=\"-40\"");
    other = Replaced(other, "<MAP val=\"2\" text=\"Sport\" />", "<MAP val=\"2\" text=\"Sport+\" />");
    other = WithoutLine(other, "<MAP val=\"3\"");
    other = Replaced(other, "  <MAP val=\"1\"", "  <MAP val=\"4\" text=\"Race\" />\n  <MAP val=\"1\"");
    EXPECT_EQ(Diff(kBase, other),
              (Lines{
                  "changed conversion conversion Speed_Formula factor: 0.25 -> 0.5",
                  "changed conversion conversion Speed_Formula offset: 0 -> -40",
                  "changed entry conversion Mode_ValueTable/entry 2 text: Sport -> Sport+",
                  "removed entry conversion Mode_ValueTable/entry 3",
                  "added entry conversion Mode_ValueTable/entry 4",
              }));
    // A table that loses all its entries becomes a formula.
    std::string formula = kBase;
    formula = WithoutLine(formula, "<MAP val=\"1\"");
    formula = WithoutLine(formula, "<MAP val=\"2\"");
    formula = WithoutLine(formula, "<MAP val=\"3\"");
    EXPECT_EQ(Diff(kBase, formula),
              (Lines{
                  "changed conversion conversion Mode_ValueTable kind: value table -> formula",
                  "removed entry conversion Mode_ValueTable/entry 1",
                  "removed entry conversion Mode_ValueTable/entry 2",
                  "removed entry conversion Mode_ValueTable/entry 3",
              }));
}

TEST(Diff_Conversion, AddedAndRemovedConversions) {
    std::string other = WithoutLine(kBase, "<CONVERSION id=\"Speed_Formula\"");
    other =
        Replaced(other, "</ECU>", " <CONVERSION id=\"Oil_Formula\" factor=\"1\" offset=\"-40\"/>\n</ECU>");
    EXPECT_EQ(Diff(kBase, other), (Lines{"removed conversion conversion Speed_Formula",
                                         "added conversion conversion Oil_Formula"}));
}

TEST(Diff_Instance, AddedAndRemovedInstancesComeInTheirDocumentsOrder) {
    std::string other = Replaced(kBase, "<INSTANCE id=\"Reset\">", "<INSTANCE id=\"HardReset\">");
    other = Replaced(other, "</ECU>",
                     " <INSTANCE id=\"TesterPresent\">\n  <REQUEST>\n  </REQUEST>\n </INSTANCE>\n</ECU>");
    EXPECT_EQ(Diff(kBase, other), (Lines{
                                      "removed instance Reset",
                                      "added instance HardReset",
                                      "added instance TesterPresent",
                                  }));
}

TEST(Diff_Message, AddedAndRemovedMessages) {
    std::string other =
        Replaced(kBase,
                 "  <REQUEST>\n   <PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"unsigned\" "
                 "unit=\"\" value=\"0x11\"",
                 "  <RESPONSE>\n  </RESPONSE>\n  <REQUEST>\n   <PARAMETER id=\"SID\" bitPos=\"0\" "
                 "bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"0x11\"");
    const std::size_t begin = other.find("  <RESPONSE>", other.find("<INSTANCE id=\"ReadSpeed\">"));
    const std::size_t end = other.find("  </RESPONSE>\n", begin) + 14;
    other.erase(begin, end - begin);
    EXPECT_EQ(Diff(kBase, other),
              (Lines{"removed message ReadSpeed/RESPONSE", "added message Reset/RESPONSE"}));
}

TEST(Diff_Parameter, EveryAttribute) {
    const std::string speed =
        "<PARAMETER id=\"Speed\" bitPos=\"8\" bitLen=\"16\" type=\"unsigned\" unit=\"rpm\" value=\"\" "
        "semantics=\"MOTOROLA\" convId=\"Speed_Formula\"/>";
    const std::string changed =
        "<PARAMETER id=\"Speed\" bitPos=\"9\" bitLen=\"15\" type=\"signed\" unit=\"1/min\" value=\"7\" "
        "semantics=\"MOTOROLA GAP\" convId=\"Mode_ValueTable\"/>";
    EXPECT_EQ(Diff(kBase, Replaced(kBase, speed, changed)),
              (Lines{
                  "changed parameter ReadSpeed/RESPONSE/Speed bitPos: 8 -> 9",
                  "changed parameter ReadSpeed/RESPONSE/Speed bitLen: 16 -> 15",
                  "changed parameter ReadSpeed/RESPONSE/Speed type: unsigned -> signed",
                  "changed parameter ReadSpeed/RESPONSE/Speed unit: rpm -> 1/min",
                  "changed parameter ReadSpeed/RESPONSE/Speed value:  -> 7",
                  "changed parameter ReadSpeed/RESPONSE/Speed semantics: MOTOROLA -> MOTOROLA GAP",
                  "changed parameter ReadSpeed/RESPONSE/Speed convId: Speed_Formula -> Mode_ValueTable",
              }));
}

TEST(Diff_Parameter, ValuesOfAnotherMeaningDiffer) {
    // 0x0100 and 0x0010 differ; "0x22" as none (hex bytes) is not "22" as unsigned.
    std::string other = Replaced(kBase, "value=\"0x0100\"", "value=\"0x0010\"");
    EXPECT_EQ(Diff(kBase, other), Lines{"changed parameter ReadSpeed/REQUEST/DID value: 0x0100 -> 0x0010"});
    other =
        Replaced(kBase, "type=\"unsigned\" unit=\"\" value=\"0x11\"", "type=\"none\" unit=\"\" value=\"11\"");
    EXPECT_EQ(Diff(kBase, other), (Lines{"changed parameter Reset/REQUEST/SID type: unsigned -> none",
                                         "changed parameter Reset/REQUEST/SID value: 0x11 -> 11"}));
}

TEST(Diff_Parameter, AddedAndRemovedParameters) {
    std::string other = WithoutLine(kBase, "<PARAMETER id=\"Mode\"");
    other = Replaced(
        other, "  </REQUEST>\n  <RESPONSE>",
        "   <PARAMETER id=\"Extra\" bitPos=\"24\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"\" "
        "semantics=\"\" convId=\"\"/>\n  </REQUEST>\n  <RESPONSE>");
    EXPECT_EQ(Diff(kBase, other), (Lines{"added parameter ReadSpeed/REQUEST/Extra",
                                         "removed parameter ReadSpeed/RESPONSE/Mode"}));
}

TEST(Diff_Models, ModelsMadeByTheFactoryCompareToo) {
    std::unique_ptr<Korvel::IEcu> a = Korvel::GetFactory().CreateEcu();
    std::unique_ptr<Korvel::IEcu> b = Korvel::GetFactory().CreateEcu();
    a->GetConversionContainer()->AddConversion("X_Formula", 1, 1.0, 0.0);
    b->GetConversionContainer()->AddConversion("X_Formula", 1, 1.0, 0.1 + 0.2);
    b->SetProtocol(7);
    std::vector<Korvel::DiffEntry> entries;
    ASSERT_TRUE(Korvel::DiffEcus(*a, *b, Korvel::DiffOptions{}, entries));
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].item, "protocol");
    EXPECT_EQ(entries[0].after, "7");
    EXPECT_EQ(entries[1].attribute, "offset");
    // The shortest text that reads back as the same number.
    EXPECT_EQ(entries[1].after, "0.30000000000000004");
    EXPECT_EQ(entries[1].change, Korvel::DiffChange::Changed);
}

TEST(Diff_Names, ChangeNames) {
    EXPECT_STREQ(Korvel::DiffChangeName(Korvel::DiffChange::Added), "added");
    EXPECT_STREQ(Korvel::DiffChangeName(Korvel::DiffChange::Removed), "removed");
    EXPECT_STREQ(Korvel::DiffChangeName(Korvel::DiffChange::Changed), "changed");
    EXPECT_STREQ(Korvel::DiffChangeName(Korvel::DiffChange::Moved), "moved");
    EXPECT_STREQ(Korvel::DiffChangeName(static_cast<Korvel::DiffChange>(9)), "");
}
