// The shared library can be loaded late, with dlopen, by a program that does not link it: it
// asks for no static TLS (which a process has little of once it runs) and works when loaded so.
// This program deliberately does not link the library.
#include <ZeKL/IEcu.h>
#include <ZeKL/IInstanceContainer.h>
#include <ZeKL/IKLReader.h>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <elf.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

std::vector<char> ReadWholeFile(const char* path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// The DT_FLAGS entry of a 64-bit ELF file's dynamic section; 0 when it has none.
uint64_t DynamicFlags(const std::vector<char>& file) {
    Elf64_Ehdr header;
    EXPECT_GE(file.size(), sizeof(header));
    std::memcpy(&header, file.data(), sizeof(header));
    EXPECT_EQ(std::memcmp(header.e_ident, ELFMAG, SELFMAG), 0);
    EXPECT_EQ(header.e_ident[EI_CLASS], ELFCLASS64);
    for (unsigned index = 0; index < header.e_phnum; ++index) {
        Elf64_Phdr segment;
        std::memcpy(&segment, file.data() + header.e_phoff + index * header.e_phentsize, sizeof(segment));
        if (segment.p_type != PT_DYNAMIC) {
            continue;
        }
        for (std::size_t at = segment.p_offset; at + sizeof(Elf64_Dyn) <= segment.p_offset + segment.p_filesz;
             at += sizeof(Elf64_Dyn)) {
            Elf64_Dyn entry;
            std::memcpy(&entry, file.data() + at, sizeof(entry));
            if (entry.d_tag == DT_FLAGS) {
                return entry.d_un.d_val;
            }
        }
    }
    return 0;
}

TEST(LateLoad, TheLibraryAsksForNoStaticTls) {
    const std::vector<char> file = ReadWholeFile(ZEKL_SHARED_LIBRARY);
    ASSERT_FALSE(file.empty());
    EXPECT_EQ(DynamicFlags(file) & DF_STATIC_TLS, 0u);
}

TEST(LateLoad, TheLibraryLoadedWithDlopenReadsADocument) {
    void* library = dlopen(ZEKL_SHARED_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    using Getter = Korvel::IKLReader& (*)();
    using Test = bool (*)(const char*);
    auto getReader = reinterpret_cast<Getter>(dlsym(library, "_ZN6Korvel11GetKLReaderEv"));
    auto isDescription = reinterpret_cast<Test>(dlsym(library, "IsKorvelFile"));
    ASSERT_NE(getReader, nullptr) << dlerror();
    ASSERT_NE(isDescription, nullptr) << dlerror();
    const std::string sample = std::string(ZEKL_EXAMPLES_DIR) + "/uds_ecu.xml";
    EXPECT_TRUE(isDescription(sample.c_str()));
    {
        std::unique_ptr<Korvel::IEcu> ecu = getReader().ReadFile(sample.c_str(), "");
        ASSERT_NE(ecu, nullptr);
        EXPECT_EQ(ecu->GetInstanceContainer()->GetCount(), 12u);
    }
    EXPECT_EQ(dlclose(library), 0);
}

}  // namespace
