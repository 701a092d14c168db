#pragma once

namespace platform {
/// Standard output and error go to stdout.txt and stderr.txt in the user directory. Sanitizer builds keep the
/// terminal, and so does a directory that cannot be written.
void redirectConsoleStreams();
} // namespace platform
