#include "forge/recipes.h"
#include "forge/score.h"
#include "music/orchestra.h"

using namespace forge;

// The island: G major, 108 beats a minute, three beats. A tune that one could whistle, a dance on it, a look
// out to sea in E minor, and the tune again with everybody.
namespace {
const Section kFrame = {4, "G | C | G | D", {}};

const Section kTune = {
    16,
    "G | Am | Em | D | C | G/B | Am | D |"
    "G | Am | Em | D | C | G | Am D7 | G",
    {{"melody", "g4:1 d5 c5:.5 b4 | c5:.5 d5 a4:2 | b4:1 g5 f#5:.5 e5 | d5:2 a4:1 |"
                "e5:1.5 d5:.5 c5:1 | d5:1.5 c5:.5 b4:1 | c5:1 b4 a4 | a4:1 b4:.5 a4 f#4:1 |"
                "g4:1 d5 c5:.5 b4 | c5:.5 d5 a4:2 | b4:1 g5 f#5:.5 e5 | d5:1.5 e5:.5 f#5:1 |"
                "g5:1.5 e5:.5 c5:1 | d5:1 b4 g4 | a4:1 c5:.5 b4 a4 f#4 | g4:3"},
     {"counter", "b3:2 d4:1 | e4:2 c4:1 | g3:1 b3 e4 | f#4:2 d4:1 | e4:2 g4:1 | g4:2 d4:1 |"
                 "e4:1 d4 c4 | d4:3 | b3:2 d4:1 | e4:2 c4:1 | g3:1 b3 e4 | d4:2 a3:1 |"
                 "c4:2 e4:1 | d4:2 b3:1 | c4:3 | b3:3"}}};

const Section kDance = {
    16,
    "D | Em | C | D | G | Em | C D | G | D | Em | C | D | Em | Am | D7 | G",
    {{"melody", "f#5:1 e5:.5 d5 a4:1 | g5:1 f#5:.5 e5 b4:1 | e5:1 d5:.5 c5 g4:1 | a4:1 b4:.5 c5 d5:1 |"
                "b4:1 c5:.5 d5 g5:1 | e5:1.5 d5:.5 b4:1 | c5:1 e5:.5 d5 c5 a4 | g4:2 r:1 |"
                "f#5:1 e5:.5 d5 a4:1 | g5:1 f#5:.5 e5 b4:1 | e5:1 f#5:.5 g5 e5:1 | d5:2 a4:1 |"
                "b4:1 c5:.5 b4 g4:1 | c5:1 b4:.5 a4 e4:1 | f#4:1 a4:.5 c5 b4 a4 | g4:3"},
     {"counter", "d4:2 f#4:1 | e4:2 g4:1 | g4:2 e4:1 | f#4:2 a4:1 | g4:2 d4:1 | g4:2 e4:1 |"
                 "e4:1.5 f#4 | d4:2 b3:1 | d4:2 f#4:1 | e4:2 g4:1 | g4:2 c4:1 | f#4:2 d4:1 |"
                 "g4:2 e4:1 | c4:2 e4:1 | c4:2 d4:1 | b3:3"}}};

const Section kSea = {
    16,
    "Em | Bm | C | G | Am | Em | F#dim B7 | Em | Em | Bm | C | G | Am | G/B | Am | D",
    {{"melody", "e5:2 f#5:.5 g5 | f#5:1.5 e5:.5 d5:1 | e5:2 c5:1 | d5:2 b4:1 | c5:1 d5:.5 e5 c5:1 |"
                "b4:2 g4:1 | a4:1.5 b4:.5 a4 f#4 | g4:1 f#4 e4 | e5:2 f#5:.5 g5 |"
                "f#5:1.5 e5:.5 d5:1 | g5:2 e5:1 | d5:2 g5:1 | e5:1.5 d5:.5 c5:1 | d5:1 b4 g4 |"
                "e5:1 c5 a4 | d5:1 c5 a4"},
     {"counter", "g3:2 b3:1 | f#3:2 b3:1 | c4:2 g3:1 | b3:2 d4:1 | a3:2 c4:1 | g3:1 b3:2 |"
                 "c4:1.5 d#4 | e4:2 b3:1 | g3:2 b3:1 | f#3:2 b3:1 | c4:2 e4:1 | b3:2 d4:1 |"
                 "c4:2 a3:1 | b3:2 d4:1 | c4:2 e4:1 | d4:2 c4:1"}}};

const Section kFarewell = {
    4, "G | C | G | G", {{"melody", "g4:1 d5 c5:.5 b4 | c5:.5 d5 e5:2 | d5:2 b4:1 | g4:3"}}};

const char* const kPlucking = "figure 0 2 3 4 3 2";
const char* const kHands = "beat x . o . o . | x . o . o o";
} // namespace

FORGE_RECIPE(music_landfall) {
    Piece p;
    p.file = "sounds/landfall.ogg";
    p.title = "Landfall";
    p.beatsPerMinute = 108;
    p.beatsPerBar = 3;
    p.atLeast = 125;
    p.rounds = 3;
    p.hallSeconds = 1.8f;
    p.sections = {
        {"frame", kFrame}, {"tune", kTune}, {"dance", kDance}, {"sea", kSea}, {"farewell", kFarewell}};
    p.form = {
        {"frame", 0.42f, 0.5f, {{"lute", kPlucking, 1}, {"pizzicato", "bass 0 - -", 0.8f, 1}}},
        {"tune",
         0.52f,
         0.6f,
         {{"flute", "line melody", 1, 1},
          {"lute", kPlucking, 0.85f},
          {"pizzicato", "bass 0 - 2", 0.8f, 1},
          {"strings", "chords", 0.3f}}},
        {"dance",
         0.62f,
         0.74f,
         {{"flute", "line melody", 0.9f, 1},
          {"violins", "line melody", 0.6f},
          {"cello", "line counter", 0.5f},
          {"lute", kPlucking, 0.9f},
          {"pizzicato", "bass 0 2 2", 0.9f, 1},
          {"frame", kHands, 0.8f},
          {"shaker", "beat o . x . x .", 0.6f}}},
        {"tune",
         0.64f,
         0.74f,
         {{"violins", "line melody", 1},
          {"flute", "line melody", 0.4f, 1},
          {"cello", "line counter", 0.8f},
          {"strings", "chords", 0.5f},
          {"lute", kPlucking, 0.8f},
          {"basses", "bass 0 - -", 0.6f},
          {"frame", kHands, 0.6f}}},
        {"sea",
         0.5f,
         0.62f,
         {{"oboe", "line melody", 1},
          {"cello", "line counter", 0.7f},
          {"harp", "figure 0 2 3 5 4 3", 1},
          {"strings", "chords", 0.6f},
          {"basses", "bass 0 - -", 0.5f}}},
        {"tune",
         0.72f,
         0.85f,
         {{"flute", "line melody", 0.9f, 1},
          {"violins", "line melody", 0.9f},
          {"cello", "line counter", 0.9f},
          {"strings", "chords", 0.6f},
          {"lute", kPlucking, 0.8f},
          {"basses", "bass 0 - 2", 0.7f},
          {"frame", kHands, 0.9f},
          {"shaker", "beat o . x . x .", 0.6f}}},
        {"farewell",
         0.6f,
         0.45f,
         {{"flute", "line melody", 0.9f, 1},
          {"harp", kPlucking, 1},
          {"strings", "chords", 0.5f},
          {"pizzicato", "bass 0 - -", 0.8f, 1}},
         0.85f},
    };
    makeMusic(p, orchestra(), out);
}
