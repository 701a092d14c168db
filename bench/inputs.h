#pragma once
#include "forge/writers.h"
#include "models/model.h"

#include <string>

/// What the benchmarks read, made in memory: the same bytes in every run.
namespace inputs {
/// A level document of about `bytes` characters: objects with bodies, actions, reactions and conversations.
std::string levelXml(size_t bytes);

/// Hills over cells of one unit, two triangles a cell, with a block of ten triangles on every 64th cell.
/// Centred on the origin.
cModel level(int cellsX, int cellsZ);
/// Height of its ground.
float groundHeight(float x, float z);

/// One closed grid of about `faces` faces in which neighbours share positions but not vertices.
cModelObject surface(int faces);
/// The same in parts of at most `facesPerPart`, for the file writers.
forge::Parts parts(int faces, int facesPerPart);

/// 32 bit, type 10; every row mixes long runs, short runs and raw packets.
platform::Bytes runLengthTga(int width, int height);

/// The inventory's record of a saved hero: so many entries, one of a thing each, of `kinds` kinds in turn.
platform::Bytes inventoryRecord(int64_t count, uint32_t kinds, uint32_t firstKind = 0);

/// A character's part: a tube of about `triangles` triangles that bends from frame to frame, with two tags.
forge::CharacterPart character(int triangles, int frames);
} // namespace inputs
