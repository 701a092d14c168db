#pragma once
#include "forge/mix.h"
#include "platform/files.h"

#include <string>

namespace forge {
/// Ogg Vorbis, two channels at kMusicRate, always the same serial number. Empty when the encoder refuses.
platform::Bytes oggFile(const Stereo& sound, const std::string& title, float quality);
} // namespace forge
