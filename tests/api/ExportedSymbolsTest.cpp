// The shared library exports exactly its public surface: the eight entry points under their
// documented names, the documented additions (the codec's among them) and no implementation
// class.
#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Symbol {
    std::string type;
    std::string name;
};

// Defined dynamic symbols of the library as "nm -D" lists them; empty when nm is missing.
std::vector<Symbol> DynamicSymbols(bool demangle) {
    std::vector<Symbol> symbols;
#ifdef _WIN32
    (void)demangle;
#else
    const std::string command = std::string("nm -D --defined-only ") + (demangle ? "-C " : "") + "'" +
                                ZEKL_SHARED_LIBRARY + "' 2>/dev/null";
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        return symbols;
    }
    char line[4096];
    while (std::fgets(line, sizeof(line), pipe) != nullptr) {
        // "<address> <type> <name>"
        std::string text(line);
        while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
            text.pop_back();
        }
        const std::size_t first = text.find(' ');
        if (first == std::string::npos || first + 3 > text.size()) {
            continue;
        }
        symbols.push_back({text.substr(first + 1, 1), text.substr(first + 3)});
    }
    pclose(pipe);
#endif
    return symbols;
}

std::set<std::string> NamesOfFunctions(const std::vector<Symbol>& symbols) {
    std::set<std::string> names;
    for (const Symbol& symbol : symbols) {
        if (symbol.type == "T" || symbol.type == "W") {
            names.insert(symbol.name);
        }
    }
    return names;
}

class ExportedSymbols : public ::testing::Test {
protected:
    void SetUp() override {
        demangled_ = DynamicSymbols(true);
        raw_ = DynamicSymbols(false);
        if (demangled_.empty() || raw_.empty()) {
            GTEST_SKIP() << "nm is not available to read " << ZEKL_SHARED_LIBRARY;
        }
    }

    std::vector<Symbol> demangled_;
    std::vector<Symbol> raw_;
};

TEST_F(ExportedSymbols, NamespaceEntryPointsAreExportedUnderTheirQualifiedNames) {
    const std::set<std::string> names = NamesOfFunctions(demangled_);
    const char* const expected[] = {
        "Korvel::GetVersion(unsigned int&, unsigned int&, unsigned int&, unsigned int&)",
        "Korvel::GetVersionString()",
        "Korvel::GetDataModelUtils()",
        "Korvel::GetKLReader()",
        "Korvel::GetKLWriter()",
        "Korvel::GetFactory()",
    };
    for (const char* name : expected) {
        EXPECT_EQ(names.count(name), 1u) << "missing export: " << name;
    }
}

TEST_F(ExportedSymbols, CodecEntryPointsAndInterfaceAreExported) {
    const std::set<std::string> names = NamesOfFunctions(demangled_);
    const char* const expected[] = {
        "Korvel::CreateCodec(Korvel::IEcu const&)",
        "Korvel::CodecProblemText(Korvel::CodecProblem)",
        "Korvel::IsCodecWarning(Korvel::CodecProblem)",
        "Korvel::ICodec::~ICodec()",
    };
    for (const char* name : expected) {
        EXPECT_EQ(names.count(name), 1u) << "missing export: " << name;
    }
    bool typeInfo = false;
    for (const Symbol& symbol : demangled_) {
        typeInfo = typeInfo || symbol.name == "typeinfo for Korvel::ICodec";
    }
    EXPECT_TRUE(typeInfo) << "the codec interface's type information is not exported";
}

// The additions for places, lint and diff, by the start of their demangled names (the
// standard library's types in their arguments are spelt differently by each library version).
TEST_F(ExportedSymbols, LintDiffAndPlaceAdditionsAreExported) {
    const std::set<std::string> names = NamesOfFunctions(demangled_);
    const char* const expected[] = {
        "Korvel::ItemPathText",
        "Korvel::IReporting::ReportAt(",
        "Korvel::ReportCollector::ReportAt(",
        "Korvel::LintSeverityName(Korvel::LintSeverity)",
        "Korvel::LintRules()",
        "Korvel::LintEcu(Korvel::IEcu const&, ",
        "Korvel::LintFile(char const*, ",
        "Korvel::LintText(",
        "Korvel::DiffChangeName(Korvel::DiffChange)",
        "Korvel::DiffEcus(Korvel::IEcu const&, Korvel::IEcu const&, Korvel::DiffOptions const&, ",
    };
    for (const char* prefix : expected) {
        const auto found = names.lower_bound(prefix);
        EXPECT_TRUE(found != names.end() && found->rfind(prefix, 0) == 0) << "missing export: " << prefix;
    }
}

TEST_F(ExportedSymbols, PlainEntryPointsAreExportedUndecorated) {
    const std::set<std::string> names = NamesOfFunctions(raw_);
    EXPECT_EQ(names.count("CreateXmlForEmptyEcu"), 1u) << "missing plain export CreateXmlForEmptyEcu";
    EXPECT_EQ(names.count("IsKorvelFile"), 1u) << "missing plain export IsKorvelFile";
}

TEST_F(ExportedSymbols, NoImplementationClassIsExported) {
    // Implementation classes carry the prefix Z; internal helpers live in Korvel::Platform.
    // (Plain searches: std::regex trips GCC 12's maybe-uninitialized warning under ASan.)
    std::ostringstream leaked;
    for (const Symbol& symbol : demangled_) {
        if (symbol.name.find("Korvel::Z") != std::string::npos ||
            symbol.name.find("Korvel::Platform::") != std::string::npos) {
            leaked << "  " << symbol.type << ' ' << symbol.name << '\n';
        }
    }
    EXPECT_TRUE(leaked.str().empty()) << "exported implementation symbols:\n" << leaked.str();
}

TEST_F(ExportedSymbols, XercesIsNotPartOfTheExportedSurface) {
    std::ostringstream leaked;
    for (const Symbol& symbol : demangled_) {
        if (symbol.name.find("xercesc") != std::string::npos) {
            leaked << "  " << symbol.type << ' ' << symbol.name << '\n';
        }
    }
    EXPECT_TRUE(leaked.str().empty()) << "exported xerces symbols:\n" << leaked.str();
}

}  // namespace
