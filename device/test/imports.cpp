#include "test/imports.h"

#include "image/pe_format.h"

#include <cstring>

namespace pavonix::device_test {

namespace {

using namespace pavonix::device;

class ImageFile {
public:
    explicit ImageFile(std::string_view bytes) : bytes_(bytes) {}

    bool ReadHeaders()
    {
        std::uint16_t magic;
        std::uint32_t peOffset;
        if (!Copy(0, &magic) || magic != kDosMagic || !Copy(kPeOffsetField, &peOffset) || !Copy(peOffset, &headers_)) {
            return false;
        }
        sections_ = peOffset + sizeof headers_.magic + sizeof headers_.file + headers_.file.optionalHeaderSize;
        return headers_.magic == kPeMagic && headers_.file.machine == kMachineArm;
    }

    std::uint32_t imports() const { return headers_.optional.directories[kImportDirectory].rva; }

    template <typename T>
    bool CopyAt(std::uint32_t rva, T *value) const
    {
        return Copy(OffsetOf(rva), value);
    }

    // Null if the text does not end within the file.
    const char *TextAt(std::uint32_t rva) const
    {
        const std::uint32_t offset = OffsetOf(rva);
        return offset < bytes_.size() && bytes_.find('\0', offset) != bytes_.npos ? bytes_.data() + offset : nullptr;
    }

private:
    static constexpr std::uint32_t kNowhere = 0xFFFFFFFF;

    template <typename T>
    bool Copy(std::uint32_t offset, T *value) const
    {
        if (offset > bytes_.size() || bytes_.size() - offset < sizeof *value) {
            return false;
        }
        std::memcpy(value, bytes_.data() + offset, sizeof *value);
        return true;
    }

    std::uint32_t OffsetOf(std::uint32_t rva) const
    {
        for (unsigned i = 0; i < headers_.file.sectionCount; ++i) {
            SectionHeader section;
            if (Copy(sections_ + i * sizeof section, &section) && rva >= section.rva &&
                rva - section.rva < section.rawSize) {
                return section.rawOffset + (rva - section.rva);
            }
        }
        return kNowhere;
    }

    std::string_view bytes_;
    PeHeaders headers_ = {};
    std::uint32_t sections_ = 0;
};

} // namespace

bool ForEachImport(std::string_view image, void *context,
                   void (*visit)(void *context, const char *library, const char *name))
{
    ImageFile file(image);
    if (!file.ReadHeaders()) {
        return false;
    }
    for (std::uint32_t place = file.imports();; place += sizeof(ImportDescriptor)) {
        ImportDescriptor descriptor;
        if (!file.CopyAt(place, &descriptor)) {
            return false;
        }
        if (descriptor.libraryName == 0) {
            return true;
        }
        const char *library = file.TextAt(descriptor.libraryName);
        std::uint32_t entry = descriptor.lookupTable != 0 ? descriptor.lookupTable : descriptor.addressTable;
        for (std::uint32_t lookup;; entry += sizeof lookup) {
            if (library == nullptr || !file.CopyAt(entry, &lookup)) {
                return false;
            }
            if (lookup == 0) {
                break;
            }
            const char *name = (lookup & kImportByOrdinal) != 0 ? "" : file.TextAt(lookup + 2);
            if (name == nullptr) {
                return false;
            }
            visit(context, library, name);
        }
    }
}

} // namespace pavonix::device_test
