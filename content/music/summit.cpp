#include "forge/recipes.h"
#include "forge/score.h"
#include "music/orchestra.h"

using namespace forge;

// Storm and height: E minor, 112 beats a minute, four beats. Bows drive without rest; the title's call stands
// in the middle in G major, as wide as the view.
namespace {
const Section kGust = {
    8,
    "Em | Em | C | D | Em | Em | Am | B",
    {{"call", "r:4 | r:4 | r:4 | r:4 | e4:1 b4:2 a4:.5 g4 | f#4:1 g4 e4:2 | a4:2 c5 | b4:4"}}};

const Section kClimb = {
    16,
    "Em | Em | C | D | Am | Em | F#dim | B | Em | Em | C | D | Am | Em/G | Am B7 | Em",
    {{"melody", "e4:.5 b4:1.5 a4:.5 g4 f#4 g4 | b4:2 e4 | e4:.5 c5:1.5 b4:.5 a4 g4 a4 | a4:2 f#4:1 d4 |"
                "a4:1 c5 e5:1.5 d5:.5 | b4:2 g4 | a4:1 c5 a4 f#4 | b4:2 a4:1 f#4 |"
                "e4:.5 b4:1.5 a4:.5 g4 f#4 g4 | b4:2 d5:1 e5 | e5:1.5 d5:.5 c5:1 g4 |"
                "d5:1.5 c5:.5 a4:1 f#4 | c5:1 b4:.5 a4 e5:2 | b4:1.5 a4:.5 g4:1 b4 |"
                "a4:1 g4 f#4 d#4 | e4:4"},
     {"counter", "g3:2 b3 | g3:2 b3 | g3:2 c4 | f#3:2 a3 | c4:2 a3 | b3:2 e4 | c4:2 f#3 | d#4:2 b3 |"
                 "g3:2 b3 | g3:2 b3 | c4:2 e4 | f#4:2 d4 | e4:2 c4 | b3:2 e4 | c4:2 b3:1 a3 | g3:4"}}};

const Section kView = {
    16,
    "G | D/F# | Em | C | Am | G/B | C | D | G | D/F# | Em | Bm | C | G/B | F#dim | B",
    {{"melody", "g4:1 d5:2 c5:.5 b4 | c5:1.5 d5:.5 a4:2 | b4:1 g5:2 f#5:.5 e5 | e5:2 d5:1 c5 |"
                "c5:1.5 d5:.5 e5:1 c5 | d5:2 b4 | c5:1 e5 d5 c5 | d5:2 a4 |"
                "g4:1 d5:2 c5:.5 b4 | c5:1.5 d5:.5 a4:2 | b4:1 g5:2 f#5:.5 e5 | d5:2 f#5:1 d5 |"
                "e5:1.5 d5:.5 c5:1 e5 | d5:1.5 c5:.5 b4:1 g4 | a4:2 c5:1 a4 | b4:2 f#4:1 d#4"},
     {"counter", "b3:2 d4 | a3:2 f#3 | g3:2 b3 | c4:2 g3 | e4:2 c4:1 e4 | g3:2 d4 | g3:2 e4 |"
                 "f#4:2 a3:1 c4 | b3:2 d4 | a3:2 f#3 | g3:2 b3 | f#4:2 b3 | g3:2 e4:1 c4 |"
                 "g3:2 d4 | c4:2 f#4 | d#4:2 b3"}}};

const Section kPeak = {8,
                       "Em | C | Am | B | C | Am B | Em | Em",
                       {{"melody", "e4:1 b4:2 a4:.5 g4 | g4:2 e4 | c5:1 e5:2 d5:.5 c5 | b4:2 d#5 |"
                                   "e5:2 g5:1 e5 | c5:1 a4 b4 d#4 | e4:4 | r:4"}}};

const char* const kStorm = "figure 0 2 3 2 4 2 3 2 0 2 3 2 4 3 2 1";
const char* const kRunning = "figure 0 2 3 2 4 3 2 3";
const char* const kSteps = "bass 0 . 0 0 . 0 2 .";
const char* const kDrums = "beat X . . x . . x . | X . . x . o x o";
const char* const kSnare = "beat . . X . . . X o | . . X . . o X x";
} // namespace

FORGE_RECIPE(music_summit) {
    Piece p;
    p.file = "sounds/summit.ogg";
    p.title = "Summit";
    p.beatsPerMinute = 112;
    p.beatsPerBar = 4;
    p.atLeast = 125;
    p.rounds = 3;
    p.hallSeconds = 2.2f;
    p.hallGain = 0.26f;
    p.sections = {{"gust", kGust}, {"climb", kClimb}, {"view", kView}, {"peak", kPeak}};
    p.form = {
        {"gust",
         0.42f,
         0.62f,
         {{"bows", kRunning, 0.8f},
          {"strings", "chords", 0.5f},
          {"horn", "line call", 1.4f},
          {"basses", "bass 0 - - -", 0.7f},
          {"drum", "beat x . . . . . . .", 0.7f}}},
        {"climb",
         0.62f,
         0.78f,
         {{"horn", "line melody", 1.3f},
          {"oboe", "line melody", 0.35f},
          {"bows", kRunning, 0.75f},
          {"strings", "chords", 0.45f},
          {"cello", "line counter", 0.6f},
          {"basses", kSteps, 0.7f},
          {"drum", kDrums, 0.75f}}},
        {"view",
         0.68f,
         0.85f,
         {{"violins", "line melody", 1},
          {"horn", "line melody", 0.6f},
          {"cello", "line counter", 0.8f},
          {"strings", "chords", 0.6f},
          {"harp", "figure 0 2 3 4 5 6 5 4 3 2 3 4 5 4 3 2", 0.5f},
          {"basses", "bass 0 - - 0 - - 2 -", 0.7f},
          {"drum", "beat X . . . . . . . | x . . . . . o o", 0.7f}}},
        {"climb",
         0.82f,
         1,
         {{"violins", "line melody", 1, 1},
          {"horn", "line melody", 1.3f},
          {"bows", kStorm, 0.6f},
          {"strings", "chords", 0.55f},
          {"cello", "line counter", 0.8f},
          {"basses", kSteps, 0.8f},
          {"drum", kDrums, 0.85f},
          {"snare", kSnare, 0.55f}}},
        {"peak",
         0.92f,
         0.6f,
         {{"horn", "line melody", 1.3f},
          {"violins", "line melody", 0.8f},
          {"bows", kRunning, 0.7f},
          {"strings", "chords", 0.6f},
          {"basses", "bass 0 - - -", 0.8f},
          {"drum", "beat X . . . . . . .", 0.8f}}},
    };
    makeMusic(p, orchestra(), out);
}
