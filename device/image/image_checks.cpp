#include "image/image_checks.h"

#include <algorithm>
#include <bit>

namespace pavonix::device {

namespace {

constexpr std::uint16_t kNewestSystem[2] = {6, 0};
constexpr std::uint32_t kLeastAlignment = 512;

bool Contains(const SectionHeader &section, std::uint32_t rva)
{
    return rva >= section.rva && rva - section.rva < section.virtualSize;
}

bool IsCode(const SectionHeader &section)
{
    return (section.characteristics & kSectionIsExecutable) != 0;
}

} // namespace

void Require(bool holds, const char *otherwise)
{
    if (!holds) {
        throw ImageError(otherwise);
    }
}

void CheckHeaders(const PeHeaders &headers, bool isDll)
{
    const OptionalHeader &optional = headers.optional;
    Require(headers.magic == kPeMagic && optional.magic == kPe32Magic, "not a PE32 file");
    Require(headers.file.machine == kMachineArm || headers.file.machine == kMachineThumb, "not for ARM");
    Require(optional.subsystem == kSubsystemWindowsCe, "not for Windows CE");
    Require(!std::lexicographical_compare(kNewestSystem, kNewestSystem + 2, optional.subsystemVersion,
                                          optional.subsystemVersion + 2),
            "for a newer system than 6.0");
    Require(((headers.file.characteristics & kFileIsDll) != 0) == isDll, isDll ? "not a DLL" : "not a program");
    Require((headers.file.characteristics & kRelocationsStripped) == 0, "cannot be relocated");
    Require(optional.directories[kRelocationDirectory].size != 0, "has no relocations");
    Require(optional.imageSize % kPageSize == 0, "its size in memory is no multiple of a page");
    Require(optional.fileAlignment >= kLeastAlignment && std::has_single_bit(optional.fileAlignment),
            "its parts are not aligned in the file");
    Require(optional.directoryCount == kDirectoryCount, "has another number of directories");
    Require(optional.directories[kThreadLocalDirectory].size == 0, "has thread-local storage");
}

void CheckSections(const OptionalHeader &header, const std::vector<SectionHeader> &sections)
{
    std::uint32_t end = header.headersSize;
    for (const SectionHeader &section : sections) {
        Require(section.rva % kPageSize == 0, "a section does not start on a page");
        Require(section.rva >= end, "a section overlaps the one before it");
        Require(section.rva <= header.imageSize && section.virtualSize <= header.imageSize - section.rva,
                "a section reaches beyond the image");
        Require((section.characteristics & kSectionIsReadable) != 0, "a section cannot be read");
        Require(!IsCode(section) || (section.characteristics & kSectionIsWritable) == 0, "has writable code");
        end = section.rva + section.virtualSize;
    }
    Require(header.imageSize - end < kPageSize, "its size in memory is not that of its sections");
    Require(header.entryPoint == 0 || std::any_of(sections.begin(), sections.end(),
                                                  [&](const SectionHeader &section) {
                                                      return IsCode(section) && Contains(section, header.entryPoint);
                                                  }),
            "its entry is outside its code");
}

} // namespace pavonix::device
