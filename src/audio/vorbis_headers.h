#pragma once
#include "platform/files.h"

/// What the headers of an Ogg Vorbis file, of every stream in it, ask of a decoder.
struct VorbisDemands {
    int channels = 0;        ///< the most of any stream
    uint64_t tableCells = 0; ///< of all code books together: a decoder makes a number of each
};

/// Reads headers alone. What is damaged counts as far as it can be read.
VorbisDemands readVorbisDemands(const platform::Bytes& file);
