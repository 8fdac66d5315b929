// A Windows CE DLL or program for ARM, loaded into this process the way the
// device's loader does it.
#pragma once

#include "image/function_table.h"
#include "image/image_memory.h"
#include "image/image_tables.h"
#include "image/pe_format.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace pavonix::device {

// The reason for a call of an image's entry; the values are the system's.
enum class EntryReason : std::uint32_t { kProcessDetach, kProcessAttach, kThreadAttach, kThreadDetach };

enum class ImageKind { kDll, kProgram };

// Loading maps the image away from its preferred base, relocates it, binds its
// imports, takes the write permission from all but its writable sections and
// calls a DLL's entry with "attach"; destruction calls it with "detach" and unmaps.
class PeImage {
public:
    // Throws ImageError when the file is no such image, an import is missing or
    // the entry refuses to attach.
    PeImage(const std::string &path, ImportResolver resolve, ImageKind kind = ImageKind::kDll);
    ~PeImage();
    PeImage(const PeImage &) = delete;
    PeImage &operator=(const PeImage &) = delete;

    // The address of an exported function, 0 when there is none.
    std::uint32_t Export(const std::string &name) { return FindExport(*memory_, headers_.optional, name); }
    std::uint32_t Export(std::uint32_t ordinal) { return FindExport(*memory_, headers_.optional, ordinal); }

    // Returns the entry's result.
    bool CallEntry(EntryReason reason);
    // Runs a program; returns what its entry returns, if it does.
    int Run();

private:
    void MapSections(const std::vector<unsigned char> &file);
    void ProtectSections();

    ImageKind kind_;
    PeHeaders headers_;
    std::vector<SectionHeader> sections_;
    std::unique_ptr<ImageMemory> memory_;
    std::unique_ptr<FunctionTable> functions_;
};

} // namespace pavonix::device
