#pragma once
#include <cstdint>
#include <string>

namespace platform {
/// Tells the person at the terminal what a tool is doing, once it has been at work for a second: a line when
/// that changes, and a line a second with the share that is done.
class cProgress {
public:
    explicit cProgress(std::string tool);

    void stage(const std::string& what); ///< "reading a.obj"
    void done(double share);             ///< of the stage, 0 … 1; may be called as often as one likes

private:
    void tell(const std::string& sentence);

    std::string tool_, stage_;
    uint32_t start_, lastLine_ = 0; ///< ticks
};
} // namespace platform
