#include "forge/recipes.h"
#include "forge/score.h"
#include "music/orchestra.h"

using namespace forge;

// Danger: C minor, 144 beats a minute, four beats. Short bows, drums that do not stop; it ends as it begins,
// so that it can start again at once.
namespace {
const Section kAlarm = {4, "Cm | Cm | Ab | G", {{"call", "r:4 | r:4 | c5:1.5 ab4:.5 eb4:2 | d4:2 b3"}}};

const Section kFight = {
    8,
    "Cm | Ab | Fm | G | Cm | Ab | Fm G | Cm",
    {{"melody", "c5:1.5 g4:.5 eb5:1 d5 | c5:1.5 ab4:.5 eb4:2 | f4:1 ab4 c5:1.5 bb4:.5 | b4:2 g4:1 d5 |"
                "eb5:1.5 d5:.5 c5:1 g4 | ab4:1.5 c5:.5 eb5:2 | f5:1 eb5 d5 b4 | c5:3 r:1"},
     {"counter", "eb4:2 g4 | eb4:2 c5 | ab4:2 f4 | g4:2 f4 | eb4:2 g4 | c5:2 ab4 | ab4:2 g4 | eb4:3 r:1"}}};

const Section kHope = {
    8,
    "Eb | Bb/D | Cm | Gm | Ab | Fm | Ddim | G",
    {{"melody", "g4:1 bb4 eb5:2 | f5:1.5 eb5:.5 d5:1 bb4 | eb5:1 g5:2 f5:.5 eb5 | d5:2 bb4:1 g4 |"
                "c5:1.5 bb4:.5 ab4:1 c5 | f4:1 ab4 c5 f5 | f5:1 d5 ab4 f4 | g4:1 b4 d5 g5"},
     {"counter", "bb3:2 g3 | d4:2 f4 | g3:2 c4 | bb3:2 d4 | c4:2 eb4 | ab3:2 c4 | d4:2 f4 | d4:2 b3"}}};

const Section kBreath = {
    4,
    "Cm | Cm | Fm | G",
    {{"call", "c4:.5 g4:1.5 f4:.5 eb4 d4 eb4 | c4:4 | f4:.5 c5:1.5 bb4:.5 ab4 g4 ab4 | g4:4"}}};

const char* const kBlades = "figure 0 0 3 0 2 0 3 2 0 0 3 0 4 3 2 1";
const char* const kFeet = "bass 0 0 0 2 0 0 2 0";
const char* const kDrums = "beat X . x . X . x o | X . x . X x x o";
const char* const kSnare = "beat . . X . . . X . | . . X . . o X x";
} // namespace

FORGE_RECIPE(music_action) {
    Piece p;
    p.file = "sounds/action.ogg";
    p.title = "Blades out";
    p.beatsPerMinute = 144;
    p.beatsPerBar = 4;
    p.atLeast = 60;
    p.rounds = 3;
    p.hallSeconds = 1.4f;
    p.hallGain = 0.22f;
    p.lufs = -15;
    p.sections = {{"alarm", kAlarm}, {"fight", kFight}, {"hope", kHope}, {"breath", kBreath}};
    p.form = {
        {"alarm",
         0.6f,
         0.75f,
         {{"bows", kBlades, 0.9f},
          {"basses", kFeet, 0.8f},
          {"horn", "line call", 0.9f},
          {"drum", "beat X . . . X . . .", 0.8f}}},
        {"fight",
         0.72f,
         0.8f,
         {{"violins", "line melody", 1},
          {"bows", kBlades, 0.8f},
          {"basses", kFeet, 0.8f},
          {"drum", kDrums, 0.65f},
          {"strings", "chords", 0.35f}}},
        {"fight",
         0.8f,
         0.88f,
         {{"violins", "line melody", 0.9f, 1},
          {"horn", "line counter", 0.9f},
          {"bows", kBlades, 0.8f},
          {"basses", kFeet, 0.85f},
          {"drum", kDrums, 0.65f},
          {"snare", kSnare, 0.5f},
          {"strings", "chords", 0.35f}}},
        {"hope",
         0.75f,
         0.9f,
         {{"horn", "line melody", 1},
          {"violins", "line melody", 0.6f, 1},
          {"cello", "line counter", 0.8f},
          {"bows", "figure 0 2 3 2 4 2 3 2", 0.7f},
          {"strings", "chords", 0.5f},
          {"basses", "bass 0 . . 0 . . 2 .", 0.8f},
          {"drum", "beat X . . x . . x .", 0.8f}}},
        {"fight",
         0.85f,
         0.95f,
         {{"violins", "line melody", 1, 1},
          {"horn", "line melody", 0.8f},
          {"bows", kBlades, 0.75f},
          {"basses", kFeet, 0.85f},
          {"drum", kDrums, 0.65f},
          {"snare", kSnare, 0.6f},
          {"strings", "chords", 0.4f}}},
        {"breath",
         0.6f,
         0.72f,
         {{"cello", "line call", 1},
          {"bows", "figure 0 . 0 . 0 . 0 .", 0.8f},
          {"basses", "bass 0 - - -", 0.8f},
          {"drum", "beat x . . o x . o o", 0.8f},
          {"shaker", "beat o o x o o o x o", 0.7f}}},
        {"fight",
         0.88f,
         1,
         {{"violins", "line melody", 1, 1},
          {"horn", "line counter", 1},
          {"oboe", "line melody", 0.4f},
          {"bows", kBlades, 0.75f},
          {"basses", kFeet, 0.9f},
          {"drum", kDrums, 0.65f},
          {"snare", kSnare, 0.65f},
          {"strings", "chords", 0.4f}}},
    };
    makeMusic(p, orchestra(), out);
}
