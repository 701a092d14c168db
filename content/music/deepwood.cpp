#include "forge/recipes.h"
#include "forge/score.h"
#include "music/orchestra.h"

using namespace forge;

// The wood and the caves below it: A minor, 66 beats a minute, four beats. A low reed over a heartbeat; the
// flute looks up once between the leaves; the B flat before the dominant is the shadow that does not leave.
namespace {
const Section kDusk = {4, "Am | Am | F | E", {{"toll", "a3:4 | r:4 | f3:4 | e3:4"}}};

const Section kSearch = {8,
                         "Am | F | Dm | E | Am | Dm | Bb | E",
                         {{"melody", "a3:3 b3:.5 c4 | c4:2 a3 | d4:2 f4:1 e4:.5 d4 | e4:3 b3:1 |"
                                     "c4:1.5 b3:.5 a3:1 e4 | f4:2 e4:1 d4 | d4:2 bb3 | b3:2 g#3"}}};

const Section kAnswer = {
    8,
    "Am | F | Dm | E | F | Dm | Am/E E7 | Am",
    {{"melody", "a3:3 b3:.5 c4 | c4:2 a3 | d4:2 f4:1 e4:.5 d4 | e4:3 b3:1 |"
                "c4:1.5 d4:.5 a3:2 | f4:1.5 e4:.5 d4:1 a3 | c4:1.5 a3:.5 b3:1 g#3 | a3:4"},
     {"counter", "a2:2 e3 | f3:2 c3 | f3:2 d3:1 a3 | g#3:2 e3 |"
                 "f3:2 a3:1 f3 | d3:2 a3:1 f3 | e3:3 d3:1 | c3:2 a2"}}};

const Section kClearing = {
    8,
    "Am | G | F | C/E | Dm | Am/C | Bb | E",
    {{"melody", "e5:2 c5:1 b4:.5 a4 | d5:2 b4:1 g4 | c5:2 a4:1 f4 | g4:3 e4:1 |"
                "f4:1 a4 d5:1.5 c5:.5 | c5:1.5 b4:.5 a4:1 e4 | bb4:2 d5:1 f5 | e5:2 d5:1 b4"},
     {"counter", "c4:2 e4 | b3:2 d4 | a3:2 c4 | c4:2 g3 | a3:2 f3 | e3:2 a3 | d4:2 bb3 | b3:2 g#3"}}};

const Section kNight = {
    4,
    "Am | Dm | E | Am",
    {{"melody", "a3:3 b3:.5 c4 | d4:2 f3 | e3:2 g#3 | a3:4"}, {"toll", "a3:4 | d3:4 | e3:4 | a3:4"}}};

const char* const kDrops = "figure 0 . 2 . 4 . 3 . | 0 . 3 . . 5 . 2";
const char* const kHeart = "beat x o . . . . . . | x o . . . . . o";
} // namespace

FORGE_RECIPE(music_deepwood) {
    Piece p;
    p.file = "sounds/deepwood.ogg";
    p.title = "Deepwood";
    p.beatsPerMinute = 66;
    p.beatsPerBar = 4;
    p.atLeast = 125;
    p.rounds = 3;
    p.hallSeconds = 3.2f;
    p.hallGain = 0.35f;
    p.lufs = -18;
    p.sections = {{"dusk", kDusk},
                  {"search", kSearch},
                  {"answer", kAnswer},
                  {"clearing", kClearing},
                  {"night", kNight}};
    p.form = {
        {"dusk",
         0.45f,
         0.5f,
         {{"tower", "line toll", 0.7f},
          {"choir", "chords", 0.8f},
          {"basses", "bass 0 - - -", 0.7f},
          {"harp", "figure . . . . 4 . 5 .", 0.7f}}},
        {"search",
         0.5f,
         0.6f,
         {{"reed", "line melody", 1},
          {"choir", "chords", 0.7f},
          {"harp", kDrops, 0.8f},
          {"basses", "bass 0 - - -", 0.6f},
          {"drum", kHeart, 1.1f}}},
        {"answer",
         0.55f,
         0.7f,
         {{"reed", "line melody", 1},
          {"cello", "line counter", 0.9f},
          {"choir", "chords", 0.6f},
          {"strings", "chords", 0.35f},
          {"harp", kDrops, 0.7f},
          {"drum", kHeart, 1.1f}}},
        {"clearing",
         0.5f,
         0.7f,
         {{"flute", "line melody", 0.85f},
          {"cello", "line counter", 0.6f},
          {"strings", "chords", 0.6f},
          {"harp", "figure 0 2 3 4 5 4 3 2", 0.8f},
          {"basses", "bass 0 - - -", 0.6f},
          {"bells", "figure . . . . . . 6 .", 0.3f, 1}}},
        {"answer",
         0.7f,
         0.62f,
         {{"oboe", "line melody", 0.6f, 1},
          {"reed", "line melody", 0.9f},
          {"cello", "line counter", 0.9f},
          {"choir", "chords", 0.8f},
          {"strings", "chords", 0.5f},
          {"harp", kDrops, 0.8f},
          {"basses", "bass 0 - - -", 0.6f},
          {"drum", kHeart, 1.2f}}},
        {"night",
         0.55f,
         0.42f,
         {{"reed", "line melody", 0.9f},
          {"tower", "line toll", 0.5f},
          {"choir", "chords", 0.8f},
          {"basses", "bass 0 - - -", 0.6f},
          {"harp", kDrops, 0.6f}},
         0.8f},
    };
    makeMusic(p, orchestra(), out);
}
