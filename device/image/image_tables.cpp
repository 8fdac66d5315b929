#include "image/image_tables.h"

#include "image/image_checks.h"

namespace pavonix::device {

namespace {

// Binds the functions of one library and returns the names that are missing.
std::string BindLibrary(ImageMemory &image, const ImportDescriptor &descriptor, ImportResolver resolve)
{
    std::string library = image.TextAt(descriptor.libraryName);
    std::string missing;
    std::uint32_t lookupTable = descriptor.lookupTable != 0 ? descriptor.lookupTable : descriptor.addressTable;
    for (std::uint32_t i = 0;; ++i) {
        std::uint32_t lookup = *image.At<std::uint32_t>(lookupTable + 4 * i);
        if (lookup == 0) {
            return missing;
        }
        const bool hasName = (lookup & kImportByOrdinal) == 0;
        // the name follows a 16-bit hint
        const std::string name = hasName ? image.TextAt(lookup + 2) : std::to_string(lookup & 0xFFFF);
        const std::uint32_t address = hasName ? resolve(library, name) : 0;
        if (address == 0) {
            missing.append(" ").append(library).append(":").append(name);
        }
        *image.At<std::uint32_t>(descriptor.addressTable + 4 * i) = address;
    }
}

ExportDirectory Exports(ImageMemory &image, const OptionalHeader &header)
{
    const DataDirectory &directory = header.directories[kExportDirectory];
    return directory.size == 0 ? ExportDirectory{} : *image.At<ExportDirectory>(directory.rva);
}

std::string NameAt(ImageMemory &image, const ExportDirectory &exports, std::uint32_t index)
{
    return image.TextAt(*image.At<std::uint32_t>(exports.names + 4 * index));
}

std::uint32_t FunctionAt(ImageMemory &image, const ExportDirectory &exports, std::uint32_t index)
{
    if (index >= exports.functionCount) {
        return 0;
    }
    std::uint32_t rva = *image.At<std::uint32_t>(exports.functions + 4 * index);
    return rva == 0 ? 0 : image.Base() + rva;
}

} // namespace

void BindImports(ImageMemory &image, const OptionalHeader &header, ImportResolver resolve)
{
    const DataDirectory &directory = header.directories[kImportDirectory];
    std::string missing;
    for (std::uint32_t offset = 0; offset + sizeof(ImportDescriptor) <= directory.size;
         offset += sizeof(ImportDescriptor)) {
        const auto *descriptor = image.At<ImportDescriptor>(directory.rva + offset);
        if (descriptor->libraryName == 0) {
            break;
        }
        missing += BindLibrary(image, *descriptor, resolve);
    }
    if (!missing.empty()) {
        throw ImageError("imports that the device does not have:" + missing);
    }
}

void CheckExports(ImageMemory &image, const OptionalHeader &header)
{
    const ExportDirectory exports = Exports(image, header);
    for (std::uint32_t i = 1; i < exports.nameCount; ++i) {
        Require(NameAt(image, exports, i - 1) < NameAt(image, exports, i), "the names of its exports are not sorted");
    }
}

std::uint32_t FindExport(ImageMemory &image, const OptionalHeader &header, const std::string &name)
{
    const ExportDirectory exports = Exports(image, header);
    for (std::uint32_t i = 0; i < exports.nameCount; ++i) {
        if (NameAt(image, exports, i) == name) {
            return FunctionAt(image, exports, *image.At<std::uint16_t>(exports.nameOrdinals + 2 * i));
        }
    }
    return 0;
}

std::uint32_t FindExport(ImageMemory &image, const OptionalHeader &header, std::uint32_t ordinal)
{
    ExportDirectory exports = Exports(image, header);
    return ordinal < exports.ordinalBase ? 0 : FunctionAt(image, exports, ordinal - exports.ordinalBase);
}

} // namespace pavonix::device
