// The parts of a PE32 file that the runner reads, with the file's layout.
#pragma once

#include <cstdint>

namespace pavonix::device {

constexpr std::uint16_t kDosMagic = 0x5A4D;    // "MZ"
constexpr std::uint32_t kPeMagic = 0x00004550; // "PE\0\0"
constexpr std::uint16_t kPe32Magic = 0x010B;
constexpr std::uint16_t kMachineArm = 0x01C0;
constexpr std::uint16_t kMachineThumb = 0x01C2;
constexpr std::uint16_t kSubsystemWindowsCe = 9;
constexpr std::uint16_t kRelocationsStripped = 0x0001;
constexpr std::uint16_t kFileIsDll = 0x2000;

constexpr std::uint32_t kPeOffsetField = 0x3C;

struct FileHeader {
    std::uint16_t machine, sectionCount;
    std::uint32_t timeStamp, symbolTable, symbolCount;
    std::uint16_t optionalHeaderSize, characteristics;
};
static_assert(sizeof(FileHeader) == 20);

struct DataDirectory {
    std::uint32_t rva, size;
};

enum Directory {
    kExportDirectory = 0,
    kImportDirectory = 1,
    kExceptionDirectory = 3,
    kRelocationDirectory = 5,
    kThreadLocalDirectory = 9,
    kDirectoryCount = 16
};

struct OptionalHeader {
    std::uint16_t magic;
    std::uint8_t linkerVersion[2];
    std::uint32_t codeSize, dataSize, zeroedSize, entryPoint, codeBase, dataBase;
    std::uint32_t imageBase, sectionAlignment, fileAlignment;
    std::uint16_t systemVersion[2], imageVersion[2], subsystemVersion[2];
    std::uint32_t reserved, imageSize, headersSize, checksum;
    std::uint16_t subsystem, dllCharacteristics;
    std::uint32_t stackAndHeapSizes[4], loaderFlags, directoryCount;
    DataDirectory directories[kDirectoryCount];
};
static_assert(sizeof(OptionalHeader) == 224);

struct PeHeaders {
    std::uint32_t magic;
    FileHeader file;
    OptionalHeader optional;
};
static_assert(sizeof(PeHeaders) == 248);

constexpr std::uint32_t kSectionIsExecutable = 0x20000000;
constexpr std::uint32_t kSectionIsReadable = 0x40000000;
constexpr std::uint32_t kSectionIsWritable = 0x80000000;

struct SectionHeader {
    char name[8];
    std::uint32_t virtualSize, rva, rawSize, rawOffset;
    std::uint32_t unused[3];
    std::uint32_t characteristics;
};
static_assert(sizeof(SectionHeader) == 40);

struct ImportDescriptor {
    std::uint32_t lookupTable, timeStamp, forwarderChain, libraryName, addressTable;
};
static_assert(sizeof(ImportDescriptor) == 20);

constexpr std::uint32_t kImportByOrdinal = 0x80000000;

struct ExportDirectory {
    std::uint32_t reserved, timeStamp, version, name, ordinalBase, functionCount, nameCount;
    std::uint32_t functions, names, nameOrdinals;
};
static_assert(sizeof(ExportDirectory) == 40);

struct RelocationBlock {
    std::uint32_t pageRva, size; // the size counts this header and the 16-bit entries after it
};

enum RelocationType { kRelocationPadding = 0, kRelocationHighLow = 3 };

} // namespace pavonix::device
