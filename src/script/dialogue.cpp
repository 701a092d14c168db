#include "script/dialogue.h"

cDialogue& cDialogue::instance() {
    static cDialogue dialogue;
    return dialogue;
}
