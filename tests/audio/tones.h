#pragma once
#include "platform/files.h"

/// Sound files for tests: a tone of so many seconds.
constexpr int kRate = 44100;

platform::Bytes wav(double seconds, double hertz); ///< mono, 16 bit
platform::Bytes ogg(double seconds);               ///< Ogg Vorbis, stereo
