#include "system/open_handles.h"

#include <cstdlib>
#include <iostream>
#include <sstream>

namespace pavonix::device {

OpenHandles openHandles;

std::string OpenHandles::Text() const
{
    std::ostringstream text;
    text << "heap=" << heapBytes << " blocks=" << heapBlocks << " peak=" << heapPeak << " files=" << files.Count()
         << " searches=" << searches.Count() << " sections=" << sections.Count() << " providers=" << providers.Count()
         << " sockets=" << sockets.Count() << " winsock=" << winsockStarts;
    return text.str();
}

bool OpenHandles::Empty() const
{
    return heapBlocks == 0 && files.Count() == 0 && searches.Count() == 0 && sections.Count() == 0 &&
           providers.Count() == 0 && sockets.Count() == 0 && winsockStarts <= applicationStarts;
}

void Fatal(const std::string &what)
{
    std::cerr << "misuse: " << what << std::endl;
    std::_Exit(70);
}

} // namespace pavonix::device
