#pragma once
#include <string>

namespace platform {
/// Standard output and error go to stdout.txt and stderr.txt in the user directory. Sanitizer builds keep the
/// terminal, and so does a directory that cannot be written.
void redirectConsoleStreams();
/// A sentence for the person at the terminal, wherever standard error goes now.
void tellTerminal(const std::string& sentence);
} // namespace platform
