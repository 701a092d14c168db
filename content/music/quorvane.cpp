#include "forge/recipes.h"
#include "forge/score.h"
#include "music/orchestra.h"

using namespace forge;

// Title: D minor, 84 beats a minute, four beats. A longing period over sixteen bars, a broad middle in F
// major, the period again with everybody, and a coda that turns to D major.
namespace {
const Section kIntro = {
    4, "Dm | Bb | Gm | A", {{"melody", "r:2 d5:1 a5:1 | -:2 g5:1 f5:1 | g5:2 d5:2 | e5:2 c#5:2"}}};

const Section kTheme = {
    16,
    "Dm | C/E | F | C | Bb | F/A | Gm | A |"
    "Dm | C/E | F | Bb | Gm | Dm/F | Gm A7 | Dm",
    {{"melody", "d4:1 a4:2 g4:.5 f4 | g4:1.5 a4:.5 e4:2 | f4:1 c5:2 bb4:.5 a4 | g4:3 a4:1 |"
                "bb4:1.5 c5:.5 d5:1 bb4 | a4:2 c5:1 f4 | g4:1 bb4 a4 g4 | a4:2 e4:1 c#4 |"
                "d4:1 a4:2 g4:.5 f4 | g4:1.5 a4:.5 e4:2 | f4:1 c5:2 bb4:.5 a4 | d5:2 c5:1 bb4 |"
                "bb4:1.5 a4:.5 g4:1 bb4 | a4:1.5 g4:.5 f4:1 d4 | g4:1 f4 e4:1.5 c#4:.5 | d4:4"},
     {"counter", "f3:2 a3 | c4:2 g3 | a3:2 f3 | e3:2 g3:1 c4 |"
                 "d4:2 bb3 | c4:2 a3:1 c4 | d4:2 c4:1 bb3 | c#4:2 a3:1 g3 |"
                 "f3:2 a3 | c4:2 g3 | a3:2 c4 | f4:2 d4 |"
                 "d4:2 bb3 | d4:2 a3:1 f3 | bb3:2 a3:1 g3 | f3:4"}}};

const Section kMiddle = {
    16,
    "F | C/E | Dm | Bb | F/A | Gm | C7 | F |"
    "F | C/E | Dm | Bb | Gm | Dm/F | Gm/Bb | A",
    {{"melody", "c5:3 d5:.5 c5 | g4:2 c5:1 g4 | a4:3 bb4:.5 a4 | f4:2 d4:1 f4 |"
                "a4:1 c5 f5:2 | d5:2 bb4:1 d5 | c5:1.5 bb4:.5 g4:1 e4 | f4:3 r:1 |"
                "c5:3 d5:.5 c5 | e5:2 d5:1 c5 | d5:1.5 e5:.5 f5:1 d5 | d5:2 c5:1 bb4 |"
                "bb4:1.5 a4:.5 g4:1 bb4 | a4:2 f4:1 d4 | g4:2 bb4:1 g4 | a4:1 g4 e4 c#4"},
     {"counter", "a3:2 f3:1 a3 | c4:2 g3 | f3:2 a3:1 d4 | d4:2 bb3 |"
                 "c4:2 a3:1 c4 | bb3:2 g3:1 bb3 | g3:1 bb3 c4:2 | a3:2 c4:1 f4 |"
                 "a3:2 f3:1 a3 | g3:2 c4 | a3:2 d4 | f4:2 d4 |"
                 "d4:2 bb3 | f3:2 a3 | d4:2 bb3 | c#4:2 a3"}}};

const Section kCoda = {8,
                       "Bb | C | Dm | Dm | Bb | Gm A | D | D",
                       {{"melody", "d4:1 a4:2 g4:.5 f4 | g4:2 e4:1 c4 | f4:2 e4:1 d4 | a4:4 |"
                                   "d5:2 c5:1 bb4 | bb4:1 a4 g4 e4 | f#4:2 a4 | d5:4"}}};

const char* const kWave = "figure 0 2 3 4 5 4 3 2";
} // namespace

FORGE_RECIPE(music_quorvane) {
    Piece p;
    p.file = "sounds/quorvane.ogg";
    p.title = "Quorvane";
    p.beatsPerMinute = 84;
    p.beatsPerBar = 4;
    p.atLeast = 160;
    p.hallSeconds = 2.6f;
    p.sections = {{"intro", kIntro}, {"theme", kTheme}, {"middle", kMiddle}, {"coda", kCoda}};
    p.form = {
        {"intro",
         0.4f,
         0.45f,
         {{"bells", "line melody", 0.8f},
          {"harp", kWave, 0.9f},
          {"strings", "chords", 0.6f},
          {"basses", "bass 0 - - -", 0.5f}}},
        {"theme",
         0.5f,
         0.62f,
         {{"flute", "line melody", 1, 1},
          {"harp", kWave, 0.75f},
          {"strings", "chords", 0.6f},
          {"cello", "line counter", 0.55f},
          {"basses", "bass 0 - - -", 0.5f}}},
        {"middle",
         0.58f,
         0.78f,
         {{"violins", "line melody", 1},
          {"oboe", "line melody", 0.35f},
          {"cello", "line counter", 0.8f},
          {"strings", "chords", 0.6f},
          {"harp", "figure 0 2 3 4 5 4 3 2", 0.6f},
          {"basses", "bass 0 - 2 -", 0.6f},
          {"drum", "beat x . . . . . . . | x . . . . . o .", 0.5f}}},
        {"theme",
         0.8f,
         1,
         {{"violins", "line melody", 1, 1},
          {"horn", "line melody", 0.9f},
          {"cello", "line counter", 1},
          {"strings", "chords", 0.55f},
          {"harp", kWave, 0.6f},
          {"basses", "bass 0 - 2 -", 0.75f},
          {"drum", "beat X . . o x . . . | X . . o x . o o", 0.7f}}},
        {"coda",
         0.75f,
         0.42f,
         {{"flute", "line melody", 0.9f, 1},
          {"horn", "line melody", 0.4f},
          {"harp", kWave, 0.9f},
          {"strings", "chords", 0.55f},
          {"basses", "bass 0 - - -", 0.6f},
          {"bells", "figure . . . . 6 . . .", 0.4f, 1}},
         0.7f},
    };
    makeMusic(p, orchestra(), out);
}
