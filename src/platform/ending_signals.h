#pragma once

namespace platform {
/// From now on interrupt, termination and hang-up are remembered, so that the game can end in order. Senders
/// repeat them (timeout does): a second one must not cut the end short. To be called before SDL, which leaves
/// the handlers of others alone.
void catchEndingSignals();
bool isEndingAsked();
} // namespace platform
