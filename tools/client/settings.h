// What need not be typed for each call.
#pragma once

namespace client {

// Reads the settings file, lines "url = ...", "port = ...", "profile = ...",
// "library = ..." and "timeout = ...", and sets what the environment does not set
// yet as PAVONIX_URL and so on, where the options look. The file is the one that
// PAVONIX_CONFIG names, or pavonix.conf in the folder XDG_CONFIG_HOME or ~/.config.
// Throws Failure(kUsage) for another key, and for a file that is named and not there.
void ReadSettings();

} // namespace client
