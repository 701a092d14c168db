#pragma once

namespace platform {
/// From now on the first interrupt, termination or hang-up is remembered, so that the game can end in order;
/// a second one ends the process. To be called before SDL, which leaves the handlers of others alone.
void catchEndingSignals();
bool isEndingAsked();
} // namespace platform
