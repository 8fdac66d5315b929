#include "image/pe_image.h"

#include "trampoline/trampoline.h"
#include "image/image_checks.h"
#include "image/image_relocations.h"
#include "system/import_gate.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

namespace pavonix::device {

namespace {

std::vector<unsigned char> ReadFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw ImageError("cannot open " + path);
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

template <typename T>
T Copy(const std::vector<unsigned char> &file, std::size_t offset)
{
    T value;
    if (offset > file.size() || file.size() - offset < sizeof(value)) {
        throw ImageError("the file ends inside its headers");
    }
    std::memcpy(&value, file.data() + offset, sizeof(value));
    return value;
}

} // namespace

PeImage::PeImage(const std::string &path, ImportResolver resolve, ImageKind kind) : kind_(kind)
{
    std::vector<unsigned char> file = ReadFile(path);
    Require(Copy<std::uint16_t>(file, 0) == kDosMagic, "not an executable file");
    auto peOffset = Copy<std::uint32_t>(file, kPeOffsetField);
    headers_ = Copy<PeHeaders>(file, peOffset);
    CheckHeaders(headers_, kind == ImageKind::kDll);
    std::size_t sectionOffset =
        peOffset + sizeof(std::uint32_t) + sizeof(FileHeader) + headers_.file.optionalHeaderSize;
    Require(sectionOffset + headers_.file.sectionCount * sizeof(SectionHeader) <= headers_.optional.headersSize,
            "its headers end inside the section table");
    for (unsigned i = 0; i < headers_.file.sectionCount; ++i) {
        sections_.push_back(Copy<SectionHeader>(file, sectionOffset + i * sizeof(SectionHeader)));
    }
    CheckSections(headers_.optional, sections_);

    memory_ = std::make_unique<ImageMemory>(headers_.optional.imageSize, headers_.optional.imageBase);
    MapSections(file);
    ApplyRelocations(*memory_, headers_.optional);
    functions_ = std::make_unique<FunctionTable>(*memory_, headers_.optional, sections_);
    CheckExports(*memory_, headers_.optional);
    BindImports(*memory_, headers_.optional, resolve);
    ProtectSections();
    Require(kind == ImageKind::kProgram || CallEntry(EntryReason::kProcessAttach), "the entry refused to attach");
}

PeImage::~PeImage()
{
    if (kind_ == ImageKind::kDll) {
        CallEntry(EntryReason::kProcessDetach);
    }
}

void PeImage::MapSections(const std::vector<unsigned char> &file)
{
    std::uint32_t headersSize = headers_.optional.headersSize;
    Require(headersSize <= file.size(), "the file ends inside its headers");
    std::memcpy(memory_->At<unsigned char>(0, headersSize), file.data(), headersSize);
    for (const SectionHeader &section : sections_) {
        std::uint32_t stored = std::min(section.rawSize, section.virtualSize); // the rest is file alignment, or zeros
        Require(section.rawOffset <= file.size() && section.rawSize <= file.size() - section.rawOffset,
                "the file ends inside a section");
        std::memcpy(memory_->At<unsigned char>(section.rva, stored), file.data() + section.rawOffset, stored);
    }
}

void PeImage::ProtectSections()
{
    memory_->Protect(0, headers_.optional.headersSize, false, false);
    for (const SectionHeader &section : sections_) {
        memory_->Protect(section.rva, section.virtualSize, (section.characteristics & kSectionIsWritable) != 0,
                         (section.characteristics & kSectionIsExecutable) != 0);
    }
    char *start = memory_->At<char>(0);
    __builtin___clear_cache(start, start + memory_->Size());
}

bool PeImage::CallEntry(EntryReason reason)
{
    const std::uint32_t entry = headers_.optional.entryPoint;
    entryRuns = true;
    const bool accepts =
        entry == 0 || CallImage(memory_->Base() + entry, {memory_->Base(), static_cast<std::uint32_t>(reason)}) != 0;
    entryRuns = false;
    return accepts;
}

int PeImage::Run()
{
    return static_cast<int>(CallImage(memory_->Base() + headers_.optional.entryPoint, {memory_->Base()}));
}

} // namespace pavonix::device
