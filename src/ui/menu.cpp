#include "ui/menu.h"

#include <SDL.h>

void pushResumeEvent() {
    SDL_Event event{};
    event.type = SDL_USEREVENT;
    event.user.code = 0;
    SDL_PushEvent(&event);
}

void pushQuitEvent() {
    SDL_Event event{};
    event.type = SDL_QUIT;
    SDL_PushEvent(&event);
}

void cMenu::open() {
    visible_ = true;
    keysHeld_ = true;
}
